// Looks at paths where accounts may mount file systems that a program of theirs answers for: one that does not answer
// is given up, and what it says of a file's owner is no proof.
#pragma once

#include <sys/statfs.h>
#include <sys/types.h>

#include "foundation/handles.h"
#include "foundation/second_look.h"
#include "foundation/text.h"

namespace quorvel {

/// Looks; false, and errno, when the look is. Where the kernel has the device of such file systems, or one is mounted,
/// a second process does it, and has two seconds (ETIMEDOUT). An answer is at most a page or so: it is one message.
[[nodiscard]] bool look_in_time(Look look, WholeText path, void* answer, size_t size);

/// path_exists and statfs(2) as such looks.
[[nodiscard]] bool path_exists_in_time(WholeText path);
[[nodiscard]] bool read_file_system(WholeText path, struct statfs& facts);

/// Opens a caller's path for reading, which may lead anywhere, as open_for_reading does. Of a regular file that a
/// program answers for the descriptor is a copy in memory: reading it waits for nobody. ETIMEDOUT when that takes two
/// seconds, EFBIG above 4 MiB.
[[nodiscard]] Descriptor open_in_time(WholeText path);

/// The same, of what is a regular file or a directory; `type` tells which, as open_for_reading does.
[[nodiscard]] Descriptor open_in_time(WholeText path, mode_t& type);

/// Opens a file for reading that lies where every account may write: only a regular one, no link and with no other
/// name, that root or the caller owns, and that no program answers for.
[[nodiscard]] Descriptor open_trusted(WholeText path);

/// Whether a path, itself no link, is a directory that root or the caller owns, and that no program answers for.
[[nodiscard]] bool is_trusted_directory(WholeText path);

}  // namespace quorvel
