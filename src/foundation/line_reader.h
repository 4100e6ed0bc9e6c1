// Lines of a file, a procfs text or a command's output, delivered as fgets delivers them: a piece ends behind its line
// feed or after `limit` characters, whichever comes first, so a long line arrives as several pieces. That is part of
// the library's interface, and so is every limit that a caller sets.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <string_view>

#include "foundation/files.h"
#include "foundation/handles.h"

namespace quorvel {

/// The longest piece that a reader can be asked for.
inline constexpr size_t kLongestPiece = 8192;

/// What is read of one file at most, in bytes. A path may lead to anybody's file: to a device that never ends, or to
/// holes that take years to read.
inline constexpr size_t kMostRead = size_t{256} << 20;

struct LineReader {
    // cppcheck-suppress uninitMemberVar
    LineReader(int open_descriptor, size_t piece_limit) : descriptor(open_descriptor), limit(piece_limit) {}
    // What was read may be a secret.
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    int descriptor;       // borrowed; -1 has no lines
    size_t limit;         // longest piece, in characters, its line feed included; at most kLongestPiece
    bool at_end = false;  // nothing more will come
    bool failed = false;  // ... because read(2) failed, or of more than kMostRead (EFBIG)
    char held = '\0';     // what the terminator of the last line stands in the place of
    char* terminator = &held;
    size_t filled = 0;  // how much of the block was ever used
    size_t taken = 0;   // bytes read
    int64_t patience = kLongestWait;
    char* begin = block;
    char* end = block;
    char block[2 * kLongestPiece + 1];  // left uninitialised: it is as large as the whole of most files
};

/// As next_piece, for a piece that is not wholly in the block yet.
[[nodiscard]] std::string_view next_piece_after_reading(LineReader& reader);

/// The next piece, or an empty view at the end. It stays valid until the next call.
[[nodiscard]] inline std::string_view next_piece(LineReader& reader) {
    char* begin = reader.begin;
    size_t length = static_cast<size_t>(reader.end - begin);
    if (length > reader.limit) length = reader.limit;
    void* feed = memchr(begin, '\n', length);
    if (feed == nullptr) return next_piece_after_reading(reader);
    reader.begin = static_cast<char*>(feed) + 1;
    return std::string_view(begin, static_cast<size_t>(reader.begin - begin));
}

/// The next piece as a text with a terminator, which its reader may change; null at the end. It stays valid until the
/// next call, and has as many characters as next_piece would give. A reader is asked for lines or for pieces, not both.
[[nodiscard]] char* next_line(LineReader& reader);

/// The next piece copied into `line` and terminated; false at the end, `line` untouched.
[[nodiscard]] bool next_line(LineReader& reader, char* line, size_t size);

/// Walks the lines that are left: for (char* line : reader).
struct LineIterator {
    LineReader* reader;
    char* line;

    char* operator*() const { return line; }
    LineIterator& operator++() {
        line = next_line(*reader);
        return *this;
    }
    bool operator!=(std::nullptr_t) const { return line != nullptr; }
};
[[nodiscard]] inline LineIterator begin(LineReader& reader) {
    return {&reader, next_line(reader)};
}
[[nodiscard]] inline std::nullptr_t end(LineReader&) {
    return nullptr;
}

/// A file that is read line by line and closes itself. One that could not be opened has no lines.
struct LineFile {
    LineFile(Descriptor opened, size_t piece_limit)
        : file(static_cast<Descriptor&&>(opened)), reader(file.number, piece_limit) {}
    ~LineFile();

    explicit operator bool() const { return static_cast<bool>(file); }

    Descriptor file;
    LineReader reader;
};
[[nodiscard]] inline LineIterator begin(LineFile& file) {
    return begin(file.reader);
}
[[nodiscard]] inline std::nullptr_t end(LineFile&) {
    return nullptr;
}

/// Ends a text at its first line feed.
void cut_at_line_feed(char* text);

}  // namespace quorvel
