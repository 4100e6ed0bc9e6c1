#include "foundation/key_value.h"

#include <string.h>
#include <sys/stat.h>

#include <algorithm>

#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/open_in_time.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"

namespace quorvel {

namespace {

std::string_view without_leading_blanks(std::string_view piece) {
    size_t blanks = 0;
    while (blanks < piece.size() && (piece[blanks] == ' ' || piece[blanks] == '\t'))
        blanks++;
    piece.remove_prefix(blanks);
    return piece;
}

// strncpy over size - 1 bytes: cut or padded with zeros, the last byte of the buffer never written.
void copy_value(char* dst, size_t size, std::string_view value) {
    size_t length = std::min(value.size(), size - 1);
    memcpy(dst, value.data(), length);
    memset(dst + length, '\0', size - 1 - length);
}

// The next line up to `limit` characters, which may be more than a piece can have, terminated; false at the end.
[[nodiscard]] bool next_long_line(LineReader& reader, char* line, size_t limit) {
    size_t length = 0;
    std::string_view piece;
    do {
        reader.limit = std::min(limit - length, kLongestPiece);
        piece = next_piece(reader);
        memcpy(line + length, piece.data(), piece.size());
        length += piece.size();
    } while (length < limit && !piece.empty() && !piece.ends_with('\n'));
    line[length] = '\0';
    return length > 0;
}

}  // namespace

std::optional<std::string_view> value_of_setting(std::string_view piece, std::string_view key) {
    piece = without_leading_blanks(piece);
    if (piece.size() <= key.size()) return {};
    if (!key.empty() && (piece[0] != key[0] || memcmp(piece.data(), key.data(), key.size()) != 0)) return {};
    if (key.empty() && piece[0] == '#') return {};

    std::string_view rest = piece;
    rest.remove_prefix(key.size());
    if (rest[0] != '=' && !is_blank_character(rest[0])) return {};
    rest = std::string_view(rest.data(), strnlen(rest.data(), rest.size()));
    size_t equals = rest.find('=');
    if (equals == std::string_view::npos) return {};
    rest.remove_prefix(equals + 1);
    while (rest.ends_with('\n') || rest.ends_with('\r'))
        rest.remove_suffix(1);
    return rest;
}

size_t read_keys(const char* path, std::span<KeyRequest> requests) {
    mode_t type;
    Descriptor file = open_in_time(path, type);
    if (type == S_IFREG) return read_keys(file.number, requests);
    if (type != 0) errno = EINVAL;
    return 0;
}

size_t read_keys(int descriptor, std::span<KeyRequest> requests) {
    size_t found = 0;
    LineReader reader(descriptor, kReaderPiece);
    for (std::string_view piece; found < requests.size() && !(piece = next_piece(reader)).empty();) {
        for (KeyRequest& request : requests) {
            const auto value = value_of_key(piece, request.key);
            if (!value || request.found) continue;
            copy_value(request.dst, request.size, *value);
            request.found = true;
            found++;
        }
    }
    if (found < requests.size() && !reader.failed) errno = ENODATA;
    return found;
}

bool could_not_be_read(int reason) {
    switch (reason) {
        case 0:
        case ENOENT:
        case ENOTDIR:
        case ENODATA:
        case EINVAL:
        case EBADMSG:
            return false;
        default:
            return true;
    }
}

}  // namespace quorvel

using namespace quorvel;

char* get_StringbyKey(const char* path, const char* key, char* dst, size_t size) {
    if (path == nullptr || key == nullptr || dst == nullptr || size == 0 || !is_possible_key(key))
        return fail_null(EINVAL);
    KeyRequest request = {key, dst, size};
    return read_keys(path, {&request, 1}) == 1 ? dst : nullptr;
}

char* getNextKey(const char* line) {
    if (line == nullptr) return fail_null(EINVAL);
    return const_cast<char*>(line + strspn(line, " \t"));
}

void remove_space(char* text) {
    if (text == nullptr) return;
    for (; *text != '\0'; text++) {
        if (is_blank_character(*text)) *text = '\0';
    }
}

void remove_last_crlf(char* text) {
    if (text == nullptr) return;
    size_t length = strlen(text);
    while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r'))
        length--;
    text[length] = '\0';
}

char* grep_file(const char* path, const char* needle, char* buf, size_t size) {
    if (buf == nullptr || path == nullptr || needle == nullptr) return fail_null(EINVAL);
    memset(buf, '\0', size);
    LineFile file(open_in_time(path), kReaderPiece);
    if (!file) {
        report_open_failure(__func__, path);
        return nullptr;
    }
    if (size < 3) return fail_null(ERANGE);
    while (next_long_line(file.reader, buf, size - 2)) {
        if (strstr(buf, needle) != nullptr) return buf;
    }
    return file.reader.failed ? nullptr : fail_null(ENODATA);
}
