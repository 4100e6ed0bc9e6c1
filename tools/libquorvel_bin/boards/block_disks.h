// The disks below /sys/block, each with the path that its link makes.
#pragma once

#include "disk/slot_match.h"
#include "foundation/text.h"

struct BlockDisk {
    quorvel::Text<64> name;
    quorvel::Text<5120> path;  // "/sys/block/LINK", or "/sys/block/NAME/LINK" with the old layout
    size_t link_at = 0;

    [[nodiscard]] const char* link() const { return path.c_str() + link_at; }
    [[nodiscard]] quorvel::DiskPlace place() const {
        return {
            {path.c_str(),           path.length          },
            {path.c_str() + link_at, path.length - link_at}
        };
    }
};

/// Looks a disk up by its kernel name; false when it has no link.
[[nodiscard]] bool find_block_disk(const char* name, bool new_sysfs, BlockDisk& disk);

/// "sda" or "nvme0n1".
[[nodiscard]] bool is_disk_entry(const char* entry);

/// Calls `visit` with the kernel name of each disk, in order: sdb before sdaa. False when /sys/block is unreadable.
[[nodiscard]] bool for_each_disk(void (*visit)(void* context, const char* name), void* context);
