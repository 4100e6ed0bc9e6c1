// The key=value syntax: one matcher for reader and writer, and the reading of several keys in one pass.
#pragma once

#include <stddef.h>

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

#include "foundation/text.h"

namespace quorvel {

/// Longest piece of a line that a reader takes, in characters.
inline constexpr size_t kReaderPiece = 511;

/// Longest piece that the writer takes, the line end included: a longer setting it cannot find again whole.
inline constexpr size_t kWriterPiece = 255;

/// Whether a key can stand in a file at all: it holds no "=" and no white space and is no comment.
[[nodiscard]] inline bool is_possible_key(std::string_view key) {
    return !key.starts_with('#') &&
           std::none_of(key.begin(), key.end(), [](char c) { return c == '=' || is_blank_character(c); });
}

/// value_of_key for a piece that is not settled by one character.
[[nodiscard]] std::optional<std::string_view> value_of_setting(std::string_view piece, std::string_view key);

/// What a piece of a line, which is not empty, sets `key` to, which is_possible_key: the text behind the "=", without
/// its line end; none when it does not set it. Most lines are settled by one character: the last one of the key, as the
/// keys of a file like to begin alike.
[[nodiscard]] inline std::optional<std::string_view> value_of_key(std::string_view piece, std::string_view key) {
    if (!key.empty() && piece[0] != ' ' && piece[0] != '\t') {
        if (piece.size() <= key.size() || piece[key.size() - 1] != key.back()) return {};
    }
    return value_of_setting(piece, key);
}

/// A key looked for, which is_possible_key, and the cleared buffer for its value, filled as get_StringbyKey fills it.
struct KeyRequest {
    std::string_view key;
    char* dst;
    size_t size;
    bool found = false;
};

/// Fills every request from one pass over the file, each as get_StringbyKey would; silent. How many were found.
size_t read_keys(const char* path, std::span<KeyRequest> requests);

/// As above, from a regular file that is open at its start.
size_t read_keys(int descriptor, std::span<KeyRequest> requests);

/// Whether errno, 0 before keys were asked for, tells that the file is there and could not be read: what was not found
/// may be set all the same.
[[nodiscard]] bool could_not_be_read(int reason);

}  // namespace quorvel
