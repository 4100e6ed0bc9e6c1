// Opening files, links and directories: the only way the library does it.
#pragma once

#include <stddef.h>
#include <sys/types.h>

#include "foundation/clock.h"
#include "foundation/handles.h"
#include "foundation/text.h"

namespace quorvel {

/// Opens for reading, close-on-exec. A FIFO without a writer does not block.
[[nodiscard]] Descriptor open_for_reading(WholeText path);

/// The same, unless the path itself is a symbolic link (ELOOP).
[[nodiscard]] Descriptor open_without_link(WholeText path);

/// Opens a regular file or a directory for reading; anything else, a device above all, is not even opened. `type` tells
/// what is there (S_IFREG, S_IFDIR, S_IFCHR ...), 0 when nothing was opened.
[[nodiscard]] Descriptor open_for_reading(WholeText path, mode_t& type);

/// Opens an existing file or device for reading and writing, close-on-exec; never creates or truncates. `flags` adds
/// O_NONBLOCK for a port; a drive without its medium would open with it.
[[nodiscard]] Descriptor open_for_update(WholeText path, int flags = 0);

/// Makes a file and opens it for writing, close-on-exec. Whatever has this name is removed first and never written to.
[[nodiscard]] Descriptor create_anew(WholeText path, mode_t mode);

/// Opens what is there for writing, as it is, or makes an empty file of this mode at most. Whether it was there is not
/// asked first: a wrong answer would empty it.
[[nodiscard]] Descriptor open_or_create(WholeText path, mode_t mode);

/// A directory to walk with readdir, or null.
[[nodiscard]] Directory open_directory(WholeText path);

/// The same descriptor with a number that is none of the standard ones: where a caller has closed one of those, what is
/// printed must not go into a file. None when there is no number left.
[[nodiscard]] Descriptor above_standard(int descriptor);

/// read(2) until `size` bytes, the end or an error; EINTR is retried. The bytes read, or -1.
[[nodiscard]] ssize_t read_fully(int descriptor, void* buffer, size_t size);

/// write(2) until all is out; EINTR is retried. True when every byte was written.
[[nodiscard]] bool write_fully(int descriptor, const void* data, size_t size);

/// How long all that the other end of a pipe has yet to write is waited for, in nanoseconds.
inline constexpr int64_t kLongestWait = 10 * kSecond;

/// Waits for input, `left` nanoseconds at most, and takes off what it has waited: who asks again and again with one
/// number waits no longer in all. EINTR is retried. False when nothing came.
[[nodiscard]] bool arrives_in_time(int descriptor, int64_t& left);

/// Whether stat(2) succeeds: something of any kind has this name.
[[nodiscard]] bool path_exists(WholeText path);

/// "." or "..".
[[nodiscard]] bool is_dot_entry(const char* name);

/// The text of a symbolic link, terminated and cut to the buffer; false when it is no readable link.
[[nodiscard]] bool read_link(WholeText path, char* text, size_t size);

/// The first line of a file without its line feed, terminated and cut to the buffer.
/// False, with an empty text and errno, when the file cannot be opened or is empty.
[[nodiscard]] bool read_first_line(WholeText path, char* line, size_t size);

}  // namespace quorvel
