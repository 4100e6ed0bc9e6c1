#include "foundation/line_reader.h"

#include <errno.h>
#include <poll.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

namespace quorvel {

namespace {

// Files are opened non-blocking so that a FIFO cannot hang the caller; a terminal or a pipe handed
// in by a caller may still answer EAGAIN, and then is waited for.
ssize_t read_some(int descriptor, char* buffer, size_t size) {
    for (;;) {
        ssize_t count = read(descriptor, buffer, size);
        if (count >= 0) return count;
        if (errno == EAGAIN) {
            struct pollfd wait = {descriptor, POLLIN, 0};
            (void)poll(&wait, 1, -1);
        } else if (errno != EINTR) {
            return -1;
        }
    }
}

// Moves what is left to the front of the block and reads behind it. False when nothing came.
bool refill(LineReader& reader) {
    if (reader.at_end) return false;
    size_t left = static_cast<size_t>(reader.end - reader.begin);
    memmove(reader.block, reader.begin, left);
    ssize_t count = read_some(reader.descriptor, reader.block + left, sizeof reader.block - left);
    reader.failed = count < 0;
    reader.at_end = count <= 0;
    reader.begin = reader.block;
    reader.end = reader.block + left + std::max<ssize_t>(count, 0);
    return count > 0;
}

}  // namespace

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
