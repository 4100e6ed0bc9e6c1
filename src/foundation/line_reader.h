// Lines of a file, a procfs text or a command's output, delivered as fgets delivers them: a piece
// ends behind its line feed or after `limit` characters, whichever comes first, so a long line
// arrives as several pieces. That is part of the library's interface, and so is every limit that a
// caller sets.
#pragma once

#include <stddef.h>
#include <string.h>

#include <string_view>

namespace quorvel {

struct LineReader {
    // cppcheck-suppress uninitMemberVar
    LineReader(int open_descriptor, size_t piece_limit) : descriptor(open_descriptor), limit(piece_limit) {}

    int descriptor;       // borrowed
    size_t limit;         // longest piece, in characters, its line feed included; at most half the block
    bool at_end = false;  // nothing more will come
    bool failed = false;  // ... because read(2) failed
    const char* begin = block;
    const char* end = block;
    char block[16384];  // left uninitialised: it is as large as the whole of most files
};

/// As next_piece, for a piece that is not wholly in the block yet.
std::string_view next_piece_after_reading(LineReader& reader);

/// The next piece, or an empty view at the end. It stays valid until the next call.
inline std::string_view next_piece(LineReader& reader) {
    const char* begin = reader.begin;
    size_t length = static_cast<size_t>(reader.end - begin);
    if (length > reader.limit) length = reader.limit;
    const void* feed = memchr(begin, '\n', length);
    if (feed == nullptr) return next_piece_after_reading(reader);
    reader.begin = static_cast<const char*>(feed) + 1;
    return std::string_view(begin, static_cast<size_t>(reader.begin - begin));
}

/// The next piece copied into `line` and terminated; false at the end, `line` untouched.
bool next_line(LineReader& reader, char* line, size_t size);

/// Ends a text at its first line feed.
void cut_at_line_feed(char* text);

}  // namespace quorvel
