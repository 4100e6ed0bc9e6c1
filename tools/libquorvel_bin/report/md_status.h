// What the kernel's md driver tells of an array: its sysfs attributes, or else /proc/mdstat.
#pragma once

#include <string_view>

#include "report/facts.h"

namespace report {

/// Whether the kernel has an md array of this name.
[[nodiscard]] bool is_kernel_array(const char* device);

/// Fills an array from /sys/block/DEVICE/md; false, untouched, when there is none.
[[nodiscard]] bool take_from_sysfs(ArrayFacts& array, const char* device);

/// Fills an array from a text of /proc/mdstat; false, untouched, when that does not list it.
[[nodiscard]] bool take_from_mdstat(ArrayFacts& array, const char* device, std::string_view mdstat);

}  // namespace report
