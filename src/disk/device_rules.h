// From a logical disk to its kernel name, on platforms without a slot table: first its SCSI device, then the block
// device below that.
#pragma once

#include <optional>

#include "disk/device_path.h"

namespace quorvel {

/// The kernel name; none, and errno, when the rules do not know the disk or it is absent.
[[nodiscard]] std::optional<EntryName> device_by_rules(const char* disk);

}  // namespace quorvel
