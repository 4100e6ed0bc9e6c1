// disks: every disk of the machine and every empty bay, a line each: kernel name, logical name and SCSI address,
// separated by tabs, "-" where there is none. Bays come first, by slot, then USB disks, boot disks and disks without a
// name.
#include <stdio.h>

#include "command.h"
#include "disk_walk.h"
#include "naming_commands.h"

namespace {

const char* text_or_dash(const char* text) {
    return text[0] != '\0' ? text : "-";
}

int print_entry(const struct disk_entry* disk, void*) {
    printf("%s\t%s\t%s\n", text_or_dash(disk->device), text_or_dash(disk->name), text_or_dash(disk->address));
    return 0;
}

}  // namespace

int run_disks(int, char**) {
    if (walk_disks(print_entry, nullptr) == 0) return kExitOk;
    perror("/sys/block");
    return kExitNo;
}
