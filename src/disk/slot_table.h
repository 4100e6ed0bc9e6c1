// Slot tables in memory: which one is in force, and who releases it.
#pragma once

#include <memory>

#include "foundation/handles.h"
#include "quorvel/naming.h"

namespace quorvel {

/// What get_DiskOrderConfig gave when LibQuorvelBin_GetPlatformDiskSet last asked it, or null.
extern const struct disk_path* last_loaded_disk_set;

/// The built-in set of a platform, or null (EOPNOTSUPP).
[[nodiscard]] const struct disk_path* built_in_set(int platform);
[[nodiscard]] bool is_built_in(const struct disk_path* set);

/// A set of whatever origin, or null. A built-in one stays.
using DiskSet = std::unique_ptr<const struct disk_path, Deleter<disk_path_free>>;

/// The set that LibQuorvelBin_GetPlatformDiskSet gives, which is not recorded; null, and errno, without one.
[[nodiscard]] DiskSet set_in_force();

/// The slots of an extension card as get_ExtSlotConfig gives them, without its dump.
[[nodiscard]] DiskSet extension_slots();

}  // namespace quorvel
