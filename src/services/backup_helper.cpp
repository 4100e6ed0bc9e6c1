// The backup helper's sub-commands.
#include <stdio.h>
#include <string.h>

#include "foundation/failure.h"
#include "foundation/numbers.h"
#include "foundation/options.h"
#include "foundation/text.h"
#include "quorvel/services.h"
#include "services/backup_generations.h"
#include "services/backup_location.h"
#include "services/backup_task.h"

using namespace quorvel;

namespace {

constexpr int kMajorVersion = 0;
constexpr int kMinorVersion = 1;

void print_usage() {
    printf("Usage of backup helper - Version %d.%02d.\n\n", kMajorVersion, kMinorVersion);
    printf("%20s: Get the location of backup destination of specifed backup task\n", "GetDestination");
    printf("%20s  GetDestination taskno pareno\n", "");
    printf("%20s: Show task's information.\n", "Info");
    printf("%20s  Info taskno\n", "");
    printf("%20s: Show task's bakup pare information.\n", "Destinfo");
    printf("%20s  Destinfo taskno\n", "");
    printf("%20s: Display version of this code\n", "Version");
    printf("%20s: Show this message.\n", "help");
    puts("");
}

// Prints a pair that goes into a generation of its own.
void print_generation(const BackupTask& task, const BackupLocation& source, const BackupLocation& destination,
                      const char* name) {
    Text<kAddressText> place("%s/task-%s/", destination.address.c_str(), text_or_empty(task.name));
    size_t generation = place.length;
    place.append("%s/%s/", name, source.origin.c_str());
    char target[kLinkTarget];
    bool linked = LibQuorvelBin_GetLastDestTarget(target, sizeof target, place.c_str(), generation) == 0;
    printf("%s %s", source.address.c_str(), place.c_str());
    if (linked) printf(" --link-dest %s", target);
    putchar('\n');
}

// Prints what rsync needs for a pair; false when there is no such pair.
[[nodiscard]] bool print_pair(const BackupTask& task, int number, const char* generation) {
    std::optional<BackupPair> pair = find_pair(task, number);
    if (!pair) return false;
    BackupLocation source = locate(pair->source);
    BackupLocation destination = locate(pair->destination);
    if (task.hardlink == kOn && !contains(destination.address.c_str(), "rsync://")) {
        if (!is_safe_for_rsync(text_or_empty(task.name))) return false;
        print_generation(task, source, destination, generation);
    } else {
        printf("%s %s\n", source.address.c_str(), destination.address.c_str());
    }
    return true;
}

// The subcommands return false when the usage is to be shown.
bool get_destination(int argc, char** argv) {
    BackupTask task;
    if (argc != 4 || LibQuorvelBin_LoadTaskInfo(argv[2], &task) != 0) return false;
    const GenerationName generation = task.hardlink == kOn ? name_generation() : GenerationName();
    (void)print_pair(task, leading_int(argv[3]), generation.c_str());  // a missing pair is no failure
    return true;
}

bool show_info(int argc, char** argv) {
    BackupTask task;
    if (argc < 3 || LibQuorvelBin_LoadTaskInfo(argv[2], &task) != 0) return false;
    print_task(task);
    return true;
}

bool show_destinations(int argc, char** argv) {
    BackupTask task;
    if (argc < 3 || LibQuorvelBin_LoadTaskInfo(argv[2], &task) != 0) return false;
    // Before the loop: all pairs of a run belong to one generation.
    const GenerationName generation = task.hardlink == kOn ? name_generation() : GenerationName();
    for (int number = 1; print_pair(task, number, generation.c_str()); number++) {
    }
    return true;
}

bool show_version(int, char**) {
    printf("%d.%02d\n", kMajorVersion, kMinorVersion);
    return true;
}

bool show_help(int, char**) {
    return false;
}

struct Operation {
    const char* word;
    bool (*run)(int argc, char** argv);
};

constexpr Operation ope_list[] = {
    {"GetDestination", get_destination  },
    {"Info",           show_info        },
    {"Destinfo",       show_destinations},
    {"-v",             show_version     },
    {"--version",      show_version     },
    {"Version",        show_version     },
    {"-h",             show_help        },
    {"--help",         show_help        },
    {"help",           show_help        },
};

bool run_operation(int argc, char** argv) {
    for (const Operation& operation : ope_list) {
        if (strcmp(argv[1], operation.word) == 0) return operation.run(argc, argv);
    }
    return false;
}

}  // namespace

int LibQuorvelBin_BackupHelperEntry(int argc, char** argv) {
    int count = argument_count(argc, argv);
    if (count >= 2 && run_operation(count, argv)) return 0;
    print_usage();
    return count < 2 ? fail(EINVAL) : 0;
}
