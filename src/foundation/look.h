// Looks at paths where accounts may mount file systems that a program of theirs answers for: one that does not answer
// is given up.
#pragma once

#include <sys/stat.h>
#include <sys/statfs.h>

#include "foundation/second_look.h"
#include "foundation/text.h"

namespace quorvel {

/// Whether a path leads right below /dev, where every name is root's.
[[nodiscard]] bool is_device_path(const char* path);

/// Whether a program of an account may answer for what a path holds, or keep the answer back: where the kernel has the
/// device of such file systems, or one is mounted, but not below the directories where nobody but root puts anything.
[[nodiscard]] bool may_be_withheld(WholeText path);

/// Looks, and has a second process do it where the answer may be withheld: ETIMEDOUT after two seconds. False, and
/// errno, when the look is. A descriptor may be a standard one.
[[nodiscard]] bool look_in_time(const Question& question);

/// stat(2), also for nothing but its success, and statfs(2) as such looks.
[[nodiscard]] bool path_exists_in_time(WholeText path);
[[nodiscard]] bool read_status(WholeText path, struct stat& status);
[[nodiscard]] bool read_file_system(WholeText path, struct statfs& facts);

}  // namespace quorvel
