// The device at whose start the signature record and, behind it, the read-error counter stand. Failures are reported in
// the words that all their users share, "write" in the messages of a read included, and leave their reason in errno. A
// pipe has bytes at its start only.
#pragma once

#include <stddef.h>
#include <sys/types.h>

namespace quorvel {

/// Reads up to `size` bytes at `offset`; false, reported, when the path cannot be opened or fewer than `least` bytes
/// are there.
[[nodiscard]] bool read_signature_device(const char* path, off_t offset, void* buffer, size_t size, size_t least);

/// Writes exactly `size` bytes at `offset` of an existing file or device and waits until they are on it. False,
/// reported, when it cannot be opened or written.
[[nodiscard]] bool write_signature_device(const char* path, off_t offset, const void* data, size_t size);

}  // namespace quorvel
