// The registry's key notation. "HOSTNAME.info.tevra.etc" and "/etc/tevra/info/HOSTNAME" both name entry HOSTNAME of the
// file /etc/tevra/info.
#pragma once

#include <stddef.h>

namespace quorvel {

/// Appends the file path of the dotted components, innermost first: "info.tevra.etc" gives "/etc/tevra/info". Empty
/// components are skipped. False, with `path` as far as it came, when there are more than 256 or the path was cut.
[[nodiscard]] bool append_path(char* path, size_t size, const char* components);

/// Appends a path's dotted form, its innermost component first: "/etc/tevra/info" gives ".info.tevra.etc", so that an
/// entry's name in front of it makes the full key.
void append_dotted(char* dotted, size_t size, const char* path);

/// Appends a path's dotted form to the path itself, of which only the first component stays: "/etc/tevra/info" becomes
/// "/etc.info.tevra.etc".
void append_dotted_in_place(char* path, size_t size);

}  // namespace quorvel

extern "C" {

/// Splits a key of either notation into scKeyName and scKeyPath, which are empty before. 0, or -1 when it holds neither
/// "/" nor ".", or does not fit the key buffers.
[[nodiscard]] int LibQuorvelBin_SeparateRegKeyAndPath(const char* key);
}
