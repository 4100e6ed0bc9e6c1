// The md helper command: the inventory is built anew, then one sub-command answers from it.
#include <inttypes.h>
#include <stdio.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/options.h"
#include "foundation/trace.h"
#include "quorvel/disk.h"
#include "quorvel/foundation.h"
#include "raid/inventory.h"
#include "raid/mode_tables.h"
#include "raid/pairing.h"

using namespace quorvel;

namespace {

void run_mdinfo(const char* name) {
    trace(kTrace, "mdinfo\n");
    LibQuorvelBin_ShowMdInfo(name);
}

void run_diskinfo(const char* name) {
    trace(kTrace, "diskinfo\n");
    if (strcmp(name, "guess") == 0) {
        print_guess_report();
    } else {
        LibQuorvelBin_ShowDiskInfo(name);
    }
}

void run_diskmode(const char*) {
    trace(kTrace, "diskmode");
    fill_mode_tables();
    LibQuorvelBin_PrintLcdString();
}

// Of the listed array that a disk belongs to, which may have been unmounted since its sizes were read, or of a disk
// that belongs to none; the sizes of what was not mounted are zero.
uint64_t disk_percent(const diskinfo& disk) {
    if (disk.in_array == nullptr) return used_percent(disk.partition_info);
    const bool mounted = IsMounted(mount_path(disk.in_array->name).c_str()) == 1;
    return mounted ? used_percent(disk.in_array->partition_info) : 0;
}

void run_diskcap(const char*) {
    constexpr int kShownSlots = 4;
    trace(kTrace, "diskcap");
    fill_mode_tables();
    const int disks = LibQuorvelBin_GetMaxDiskNum();
    for (int slot = 1; slot <= kShownSlots; slot++) {
        const diskinfo* disk = slot <= disks ? find_disk(slot) : nullptr;
        printf("%" PRIu64 " ", disk != nullptr ? disk_percent(*disk) : 0);
    }
}

// An md number whose device node opens but holds no array, or -1.
int empty_md_number() {
    constexpr int kFirst = 11;
    constexpr int kLast = 15;
    for (int number = kFirst; number <= kLast; number++) {
        arrayinfo array = {};
        const Descriptor device = open_for_update(Text<32>(files::kMdNode, number));
        if (device && get_array_info(device.number, &array) != 0) return number;
    }
    return -1;
}

void run_empty_md_name(const char*) {
    const int number = empty_md_number();
    if (number < 0) return;
    printf(files::kMdNode, number);
    putchar('\n');
}

struct SubCommand {
    const char* word;
    bool takes_name;  // one argument, no more and no less; the others ignore theirs
    void (*run)(const char* name);
};

constexpr SubCommand kSubCommands[] = {
    {"mdinfo",               true,  run_mdinfo       },
    {"diskinfo",             true,  run_diskinfo     },
    {"diskmode",             false, run_diskmode     },
    {"diskcap",              false, run_diskcap      },
    {"GetEmptyMdNameForTmp", false, run_empty_md_name},
};

}  // namespace

int LibQuorvelBin_MdHelper(int argc, char** argv) {
    const int count = argument_count(argc, argv);
    if (count < 2) return 0;
    trace(kTrace, "argc = %d, argv[0] = %s\n", count, argv[0]);
    LibQuorvelBin_InitMdInfo();
    LibQuorvelBin_InitDiskInfo();
    LibQuorvelBin_InitPareInfo();
    link_master_arrays();
    for (const SubCommand& command : kSubCommands) {
        if (strcmp(command.word, argv[1]) == 0 && (!command.takes_name || count == 3))
            command.run(count > 2 ? argv[2] : nullptr);
    }
    return 0;
}
