// Texts from devices, settings and tools, which may hold any bytes, as UTF-8 that every reader takes.
#pragma once

#include <stddef.h>

#include <string_view>

/// The length of the UTF-8 sequence that a text begins with; 0 when it begins with none.
[[nodiscard]] size_t utf8_sequence(std::string_view text);

/// Whether a text is UTF-8 from its first byte to its last.
[[nodiscard]] bool is_utf8(std::string_view text);

/// Room for any text that escape_bytes makes, its terminator included.
[[nodiscard]] constexpr size_t escaped_size(size_t length) {
    return 4 * length + 1;
}

/// Copies a text and terminates it; each byte that belongs to no UTF-8 sequence becomes "\x" and two hexadecimal
/// digits, and with `controls` so does each control character. What has no room is left away, whole characters at a
/// time. Returns the length.
size_t escape_bytes(char* target, size_t size, std::string_view text, bool controls);
