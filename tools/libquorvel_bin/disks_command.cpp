// disks: every disk of the machine and every empty bay, a line each: kernel name, logical name and SCSI address,
// separated by tabs, "-" where there is none.
#include <errno.h>
#include <stdio.h>
#include <string.h>

#include "libquorvel_bin.h"
#include "naming_commands.h"

namespace {

const char* or_dash(const char* text) {
    return text[0] != '\0' ? text : "-";
}

int print_disk(const struct disk_entry* disk, void*) {
    printf("%s\t%s\t%s\n", or_dash(disk->device), or_dash(disk->name), or_dash(disk->address));
    return 0;
}

}  // namespace

int run_disks(int, char**) {
    if (LibQuorvelBin_WalkDisks(print_disk, nullptr) >= 0) return kExitOk;
    fprintf(stderr, "/sys/block: %s\n", strerror(errno));
    return kExitNo;
}
