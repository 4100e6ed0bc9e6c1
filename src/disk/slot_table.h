// Slot tables in memory: which one is in force, and who releases it.
#pragma once

#include <memory>

#include "foundation/handles.h"
#include "quorvel/naming.h"

namespace quorvel {

/// What get_DiskOrderConfig gave when LibQuorvelBin_GetPlatformDiskSet last asked it, or null; null
/// again once the library has released it.
extern const struct disk_path* last_loaded_disk_set;

/// Releases a set unless it is a built-in one.
struct DiskSetDeleter {
    void operator()(const struct disk_path* set) const {
        if (set != last_loaded_disk_set) return;
        disk_path_free(set);
        last_loaded_disk_set = nullptr;
    }
};

/// The set in force for the length of one call, or null.
using DiskSet = std::unique_ptr<const struct disk_path, DiskSetDeleter>;
/// A set that was read from a file, or null.
using LoadedDiskSet = std::unique_ptr<const struct disk_path, Deleter<disk_path_free>>;

}  // namespace quorvel
