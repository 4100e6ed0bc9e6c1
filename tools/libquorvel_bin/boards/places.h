// From a disk's link to the row that names its place: the shortest part of the link that names the place and nothing
// else, and that stays the same from boot to boot as far as the kernel has such a part.
#pragma once

#include "boards/block_disks.h"

struct LearntPlace {
    bool usb = false;
    quorvel::Text<128> path;  // empty when no row can name the place; `remark` tells why
    int port1 = -1, port2 = -1;
    int peer1 = -1, peer2 = -1;    // the ports by which the other speed of the same connector goes, where they differ
    quorvel::Text<48> address;     // of an internal disk: host:channel:target:lun, or "-"
    const char* remark = nullptr;  // what the row depends on
};

/// Every disk that is there at one moment, with its serial number.
struct AllDisks {
    static constexpr int kMost = 128;
    struct Disk : BlockDisk {
        quorvel::Text<128> serial;  // as the kernel has it, or empty
    };
    Disk* disks = nullptr;
    int count = 0;

    AllDisks();
    ~AllDisks();
    /// Looks at the machine again.
    void look();
    AllDisks(const AllDisks&) = delete;
    AllDisks& operator=(const AllDisks&) = delete;
    [[nodiscard]] const Disk* find(const char* name) const;
};

/// The place of a disk, whose row must not describe another of those that are there.
[[nodiscard]] LearntPlace place_of_disk(const BlockDisk& disk, const AllDisks& all);
