// From a disk's place in sysfs to its logical name, on platforms without a slot table.
#pragma once

#include "disk/named_disk.h"
#include "disk/wiring.h"

namespace quorvel {

/// The disk's name; none when the rules have none for its place.
[[nodiscard]] std::optional<NamedDisk> name_by_rules(const Wiring& wiring, const char* device, const DiskPlace& disk,
                                                     bool new_sysfs);

}  // namespace quorvel
