// Opening files, links and directories: the only way the library does it.
#pragma once

#include <stdarg.h>
#include <stddef.h>
#include <sys/types.h>

#include <string_view>

#include "foundation/handles.h"

namespace quorvel {

/// Opens for reading, close-on-exec. A FIFO without a writer does not block.
Descriptor open_for_reading(const char* path);

/// As open_for_reading; `type` tells what was opened (S_IFREG, S_IFDIR ...), 0 when nothing was.
Descriptor open_for_reading(const char* path, mode_t& type);

/// Opens an existing file or device for reading and writing, close-on-exec; never creates or
/// truncates.
Descriptor open_for_update(const char* path);

/// A directory to walk with readdir, or null.
Directory open_directory(const char* path);

/// read(2) until `size` bytes, the end or an error; EINTR is retried. The bytes read, or -1.
ssize_t read_fully(int descriptor, void* buffer, size_t size);

/// write(2) until all is out; EINTR is retried. True when every byte was written.
bool write_fully(int descriptor, const void* data, size_t size);

/// Whether stat(2) succeeds: something of any kind has this name.
bool path_exists(const char* path);

/// "." or "..".
bool is_dot_entry(const char* name);

/// The text of a symbolic link, terminated and cut to the buffer; false when it is no readable
/// link.
bool read_link(const char* path, char* text, size_t size);

/// The first line of a file without its line feed, terminated and cut to the buffer.
/// False, with an empty text, when the file cannot be opened or is empty.
bool read_first_line(const char* path, char* line, size_t size);

}  // namespace quorvel
