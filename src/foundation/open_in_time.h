// Opening a caller's path for reading, which may lead anywhere: also where a program of an account answers for the
// files.
#pragma once

#include <sys/types.h>

#include "foundation/handles.h"
#include "foundation/text.h"

namespace quorvel {

/// Opens for reading, as open_for_reading does. Of a regular file that a program answers for, that /proc has of a
/// process, or that is mounted for others than the caller, the descriptor is a copy without a name: reading it waits
/// for nobody. ETIMEDOUT when that takes two seconds, EFBIG above 4 MiB.
[[nodiscard]] Descriptor open_in_time(WholeText path);

/// The same, of what is a regular file or a directory; `type` tells which, as open_for_reading does.
[[nodiscard]] Descriptor open_in_time(WholeText path, mode_t& type);

}  // namespace quorvel
