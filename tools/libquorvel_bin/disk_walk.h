// Every disk of the machine and every empty bay, in one pass over the slot tables and the links.
#pragma once

#include <stdint.h>

/// A disk or an empty bay.
struct disk_entry {
    char device[32];   ///< kernel name; empty for an empty bay
    char name[96];     ///< logical name; empty when it has none
    char address[48];  ///< SCSI address; empty when it is not told
    int32_t kind;      ///< DISK_PATH_INTERNAL, _USB or _BOOT; DISK_PATH_END for a disk without a name
    int32_t slot;
};

/// Calls `visit` for each, bays first, by slot, then USB disks, boot disks and disks without a name. A result of it
/// other than 0 ends the walk.
/// @return 0, or what ended the walk; -1, and errno, when the disks cannot be listed or memory is short.
int walk_disks(int (*visit)(const struct disk_entry* disk, void* context), void* context);
