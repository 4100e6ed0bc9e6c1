// The words that stand behind some commands. The library passes over a wrong one in silence, or shows a usage as if
// that had been asked for.
#include <string.h>

#include <string_view>

#include "foundation/numbers.h"
#include "libquorvel_bin.h"
#include "telling.h"

namespace {

constexpr int kAnyNumber = -1;

struct Subcommand {
    const char* command;
    const char* word;
    const char* arguments;  // as they are shown
    int least, most;        // arguments behind the word
};

// Options and words that ask for a usage or a version are not shown.
constexpr Subcommand kSubcommands[] = {
    {"md",     "mdinfo",               " MD",                       1, 1         },
    {"md",     "diskinfo",             " DISK|guess",               1, 1         },
    {"md",     "diskmode",             "",                          0, kAnyNumber},
    {"md",     "diskcap",              "",                          0, kAnyNumber},
    {"md",     "GetEmptyMdNameForTmp", "",                          0, kAnyNumber},
    {"config", "read",                 " KEY",                      1, 1         },
    {"config", "write",                " KEY VALUE",                2, 2         },
    {"config", "delete",               " KEY",                      1, 1         },
    {"config", "apply",                " [--dry-run] [--add] FILE", 1, kAnyNumber},
    {"config", "-h",                   nullptr,                     0, kAnyNumber},
    {"iscsi",  "session_info",         "",                          0, kAnyNumber},
    {"iscsi",  "volume_info",          "",                          0, kAnyNumber},
    {"iscsi",  "IsConnected",          "",                          0, kAnyNumber},
    {"iscsi",  "GetNewTID",            "",                          0, kAnyNumber},
    {"iscsi",  "GetTIDfromTCID",       " NUMBER",                   1, kAnyNumber},
    {"backup", "Info",                 " TASK",                     1, kAnyNumber},
    {"backup", "GetDestination",       " TASK PAIR",                2, 2         },
    {"backup", "Destinfo",             " TASK",                     1, kAnyNumber},
    {"backup", "Version",              "",                          0, kAnyNumber},
    {"backup", "-v",                   nullptr,                     0, kAnyNumber},
    {"backup", "--version",            nullptr,                     0, kAnyNumber},
    {"backup", "help",                 "",                          0, kAnyNumber},
    {"backup", "-h",                   nullptr,                     0, kAnyNumber},
    {"backup", "--help",               nullptr,                     0, kAnyNumber},
};

const Subcommand* find_subcommand(const char* command, const char* word) {
    for (const Subcommand& row : kSubcommands) {
        if (strcmp(row.command, command) == 0 && strcmp(row.word, word) == 0) return &row;
    }
    return nullptr;
}

bool has_subcommands(const char* command) {
    for (const Subcommand& row : kSubcommands) {
        if (strcmp(row.command, command) == 0) return true;
    }
    return false;
}

const char* fault_of(const Subcommand* row, int arguments, char** argv) {
    if (row == nullptr) return "unknown word";
    if (arguments < row->least) return "missing argument";
    if (row->most != kAnyNumber && arguments > row->most) return "surplus argument";
    const bool names_task = row->least > 0 && std::string_view(row->arguments).starts_with(" TASK");
    return names_task && !quorvel::is_all_digits(argv[3]) ? "TASK is no number" : nullptr;
}

void show_words(const char* command) {
    const char* separator = "";
    for (const Subcommand& row : kSubcommands) {
        if (strcmp(row.command, command) != 0 || row.arguments == nullptr) continue;
        fprintf(stderr, "%s%s%s", separator, row.word, row.arguments);
        separator = ", ";
    }
    fputc('\n', stderr);
}

void tell(int argc, char** argv, const char* fault) {
    const bool has_word = argc > 2;
    fprintf(stderr, "libquorvel_bin: %s: %s%s%s; known are: ", argv[1], has_word ? argv[2] : "", has_word ? ": " : "",
            fault);
    show_words(argv[1]);
}

// These entry points show a usage and do nothing. The one of the settings would take other words of six letters for
// "delete".
void show_usage([[maybe_unused]] int argc, [[maybe_unused]] char** argv, [[maybe_unused]] bool is_known) {
#ifndef QUORVEL_WITHOUT_services
    if (strcmp(argv[1], "iscsi") == 0) (void)LibQuorvelBin_iSCSIHelper(argc - 1, argv + 1);
    if (strcmp(argv[1], "backup") == 0) (void)LibQuorvelBin_BackupHelperEntry(argc - 1, argv + 1);
#endif
#ifndef QUORVEL_WITHOUT_registry
    if (strcmp(argv[1], "config") == 0 && argc > 3 && !is_known) (void)LibQuorvelBin_ConfigHelperShowUsage();
#endif
}

}  // namespace

bool is_wrong_subcommand(int argc, char** argv) {
    if (!has_subcommands(argv[1])) return false;
    const Subcommand* row = argc > 2 ? find_subcommand(argv[1], argv[2]) : nullptr;
    const char* fault = argc > 2 ? fault_of(row, argc - 3, argv) : "missing word";
    if (fault == nullptr) return false;
    tell(argc, argv, fault);
    show_usage(argc, argv, row != nullptr);
    return true;
}
