// Opening a caller's path for reading, which may lead anywhere: also to files that an account, or a program of one that
// answers for them, may keep from being read.
#pragma once

#include <sys/types.h>

#include "foundation/handles.h"
#include "foundation/text.h"

namespace quorvel {

/// Opens for reading, as open_for_reading does. Where look_in_time has a second process look, the descriptor of a
/// regular file is a copy without a name: reading it waits for nobody. ETIMEDOUT when that takes two seconds, EFBIG
/// above 4 MiB.
[[nodiscard]] Descriptor open_in_time(WholeText path);

/// The same for who reads no more than the start: a copy may end at 4 MiB.
[[nodiscard]] Descriptor open_start_in_time(WholeText path);

/// The same, of what is a regular file or a directory; `type` tells which, as open_for_reading does.
[[nodiscard]] Descriptor open_in_time(WholeText path, mode_t& type);

}  // namespace quorvel
