// What stands in the way of erasing a disk. A disk is judged by its device number, whatever path leads to it.
#pragma once

#include <stdint.h>
#include <sys/types.h>

#include "foundation/handles.h"
#include "foundation/text.h"
#include "quorvel/naming.h"

using Reason = quorvel::Text<512>;

/// A whole disk.
struct Disk {
    char kernel[64] = "";          // as in /sys/block
    char node[80] = "";            // "/dev/" and that name
    char name[64] = "-";           // logical, "-" for none
    int32_t kind = DISK_PATH_END;  // that of the name: DISK_PATH_INTERNAL ..., DISK_PATH_END without a name
    bool usb = false;              // by its place, also without a name
};

/// The whole disk that a path leads to; false, with the reason, when it leads to something else.
[[nodiscard]] bool find_disk(const char* path, Disk& disk, Reason& reason);

/// Whether a mount, swap space, an array, another mapping or anything else uses the disk or a part of it.
[[nodiscard]] bool is_in_use(const Disk& disk, Reason& reason);

/// Whether the disk is of another kind than the layout (DISK_PATH_INTERNAL or DISK_PATH_USB) is made for.
[[nodiscard]] bool is_claimed(const Disk& disk, int32_t layout_kind, Reason& reason);

/// Whether another program that lays a disk out, or looks at what is on it, has it to itself and does not let go in a
/// few seconds. If not, the caller has it for as long as `turn` lives.
[[nodiscard]] bool is_taken(const char* node, quorvel::Descriptor& turn, Reason& reason);

/// Tells on standard output what is known of the disk: "device=", "name=", "serial=", "bytes=", and "holds=" a line for
/// it and each partition that holds something, with the bytes of a partition and what its first bytes look like.
void describe_disk(const Disk& disk);
