// The directory of a file that is to be written.
#pragma once

namespace report {

/// Makes the directory of a path the process's own, and answers the file's name in it; null, and errno, when that
/// cannot be done. A link on the way counts only where nobody but root and the caller may write: another account's
/// (EPERM) would choose whose file of that name is replaced.
[[nodiscard]] const char* enter_directory_of(const char* path);

}  // namespace report
