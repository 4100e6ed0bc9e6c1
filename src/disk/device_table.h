// From a logical disk to its kernel name, by a slot table.
#pragma once

#include "disk/device_path.h"
#include "quorvel/naming.h"

namespace quorvel {

/// What a search among the links of /sys/block came to.
struct FoundDevice {
    int fault = 0;  // ENXIO: no row names the disk; ENODEV: none of its rows holds a link; any other: the search failed
    EntryName name;
};

[[nodiscard]] FoundDevice find_device(const struct disk_path* set, const char* disk);

}  // namespace quorvel
