// The kernel's table of what is mounted where (/proc/mounts), whose lines are as long as their mount options.
#pragma once

#include <string_view>

namespace quorvel {

/// Whether a line of the table is one that is looked for.
using MountTest = bool (*)(const char* line, const char* text);

/// Whether any line passes the test; false, and errno, when the table cannot be read.
[[nodiscard]] bool any_mount(MountTest passes, const char* text);

/// Whether the files of such a type are what a program says ("fuse", "fuse.sshfs"), under the name of any device.
/// "fuseblk" only root mounts.
[[nodiscard]] bool is_answered_by_program(std::string_view type);

/// Whether the table may hold a file system of such a type: also where it cannot be read.
[[nodiscard]] bool programs_are_mounted();

}  // namespace quorvel
