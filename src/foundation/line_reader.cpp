#include "foundation/line_reader.h"

#include <errno.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

namespace quorvel {

namespace {

// Files are opened non-blocking so that a FIFO cannot hang the caller; what may still answer EAGAIN is waited for.
[[nodiscard]] ssize_t read_some(LineReader& reader, char* buffer, size_t size) {
    if (reader.taken >= kMostRead) {
        errno = EFBIG;
        return -1;
    }
    for (;;) {
        ssize_t count = read(reader.descriptor, buffer, size);
        if (count > 0) reader.taken += static_cast<size_t>(count);
        if (count >= 0) return count;
        if (errno != EINTR && (errno != EAGAIN || !arrives_in_time(reader.descriptor, reader.patience))) return -1;
    }
}

// Moves what is left to the front of the block and reads behind it. False when nothing came.
[[nodiscard]] bool refill(LineReader& reader) {
    if (reader.at_end || reader.descriptor < 0) return false;
    size_t left = static_cast<size_t>(reader.end - reader.begin);
    memmove(reader.block, reader.begin, left);
    ssize_t count = read_some(reader, reader.block + left, sizeof reader.block - 1 - left);
    reader.failed = count < 0;
    reader.at_end = count <= 0;
    reader.begin = reader.block;
    reader.end = reader.block + left + std::max<ssize_t>(count, 0);
    reader.filled = std::max(reader.filled, static_cast<size_t>(reader.end - reader.block) + 1);
    return count > 0;
}

}  // namespace

LineReader::~LineReader() {
    explicit_bzero(block, filled);
}

// Out of line, as it stands on every way out of a function that reads a file.
LineFile::~LineFile() = default;

std::string_view next_piece_after_reading(LineReader& reader) {
    size_t searched = 0;
    for (;;) {
        size_t length = std::min(static_cast<size_t>(reader.end - reader.begin), reader.limit);
        const void* feed = memchr(reader.begin + searched, '\n', length - searched);
        if (feed != nullptr) length = static_cast<size_t>(static_cast<const char*>(feed) + 1 - reader.begin);
        if (feed != nullptr || length == reader.limit || !refill(reader)) {
            std::string_view piece(reader.begin, length);
            reader.begin += length;
            return piece;
        }
        searched = length;
    }
}

char* next_line(LineReader& reader) {
    *reader.terminator = reader.held;
    reader.terminator = &reader.held;
    std::string_view piece = next_piece(reader);
    if (piece.empty()) return nullptr;
    // Behind the piece there is always a place in the block: the next piece's first character, or the block's last one.
    reader.terminator = reader.begin;
    reader.held = *reader.terminator;
    *reader.terminator = '\0';
    return reader.begin - piece.size();
}

bool next_line(LineReader& reader, char* line, size_t size) {
    std::string_view piece = next_piece(reader);
    if (piece.empty()) return false;
    size_t length = std::min(piece.size(), size - 1);
    memcpy(line, piece.data(), length);
    line[length] = '\0';
    return true;
}

void cut_at_line_feed(char* text) {
    text[strcspn(text, "\n")] = '\0';
}

}  // namespace quorvel
