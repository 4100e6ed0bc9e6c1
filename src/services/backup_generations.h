// The generations of a backup task: directories named after the time they were made, side by side in the task's
// directory. Unchanged files of a new one are hard links into the one before.
#pragma once

#include <stddef.h>

#include "foundation/text.h"

namespace quorvel {

/// Room for a link target.
inline constexpr size_t kLinkTarget = 1024;

/// A generation's name, whatever the clock says.
using GenerationName = Text<96>;

/// The local time as a generation's name: year to second, 14 digits.
[[nodiscard]] GenerationName name_generation();

}  // namespace quorvel

extern "C" {

/// The place in the task's last generation that belongs to a new destination, relative to the destination, as rsync
/// takes --link-dest.
/// @param generation  index in `destination` of its own generation's name; what is in front of it is the task's
/// directory
/// @return 0; -1, dst untouched, when there is no other generation, or when the target does not fit (then with a
/// warning)
[[nodiscard]] int LibQuorvelBin_GetLastDestTarget(char* dst, size_t size, const char* destination, size_t generation);
}
