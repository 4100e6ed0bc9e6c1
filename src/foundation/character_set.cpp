// Texts between the appliance's code page and UTF-8, converted by the C library's own converters.
#include <errno.h>
#include <iconv.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <string_view>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr char kUtf8[] = "UTF-8";

// The code page loaded last. Reading it never touches the last character, so it stays terminated.
char code_page[32] = "CP932";

void reload_code_page() {
    if (get_StringbyKey(files::kInfo, "codepage", code_page, sizeof code_page) == nullptr) {
        puts("codepage not found in info file.");
        return;
    }
    char* underscore = strchr(code_page, '_');
    if (underscore != nullptr) *underscore = '-';
}

// Converters differ in what they call a code page: the name that a setting has, and the one that is tried after it.
struct OtherName {
    const char* name;
    const char* other;
};

constexpr OtherName kOtherNames[] = {
    {"CP932", "SHIFT_JIS"}, // musl's converter
};

const char* other_name_of(const char* name) {
    for (const OtherName& row : kOtherNames) {
        if (strcmp(row.name, name) == 0) return row.other;
    }
    return name;
}

struct Converter {
    iconv_t handle;

    Converter(const char* target, const char* source) : handle(iconv_open(target, source)) {
        if (!is_open()) handle = iconv_open(other_name_of(target), other_name_of(source));
    }
    ~Converter() {
        if (is_open()) (void)iconv_close(handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    bool is_open() const { return reinterpret_cast<intptr_t>(handle) != -1; }
};

// Where the next byte goes, and how many there may be.
struct Room {
    char* out;
    size_t left;
};

// What brings a stateful code page back to its first state begins with one of these; what stands in front of that is
// characters that the converter still held back.
bool begins_reset(char c) {
    constexpr char kEscape = 0x1b;
    constexpr char kShiftIn = 0x0f;
    return c == kEscape || c == kShiftIn;
}

[[nodiscard]] bool append(Room& room, std::string_view bytes) {
    if (bytes.size() > room.left) return false;
    memcpy(room.out, bytes.data(), bytes.size());
    room.out += bytes.size();
    room.left -= bytes.size();
    return true;
}

// Writes the characters held back, and behind a whole text the return to the first state where there is room for it.
// False when a character had no room.
[[nodiscard]] bool flush(iconv_t converter, Room& room, bool whole) {
    char held[64];
    char* end = held;
    size_t held_room = sizeof held;
    if (iconv(converter, nullptr, nullptr, &end, &held_room) == static_cast<size_t>(-1)) return true;
    char* reset = std::find_if(held, end, begins_reset);
    if (!append(room, {held, static_cast<size_t>(reset - held)})) return false;
    if (whole) (void)append(room, {reset, static_cast<size_t>(end - reset)});
    return true;
}

// Converts until the input ends or something in it, or the room, stops the conversion for good. 0 when all was
// converted, otherwise the error.
[[nodiscard]] int convert_all(iconv_t converter, const char* source, Room& room) {
    char* in = const_cast<char*>(source);
    size_t left = strlen(source);
    int error = 0;
    while (left > 0 && error == 0) {
        if (iconv(converter, &in, &left, &room.out, &room.left) == static_cast<size_t>(-1)) error = errno;
    }
    return flush(converter, room, error == 0) ? error : E2BIG;
}

[[nodiscard]] char* convert(const char* function, const Converter& converter, char* dst, size_t dstsize,
                            const char* source) {
    if (!converter.is_open()) {
        trace(kTrace, ">%s: iconv_open() fail\n", function);
        return nullptr;
    }
    Room room = {dst, std::max<size_t>(dstsize, 1) - 1};
    int error = convert_all(converter.handle, source, room);
    if (error != 0 && dstsize > 0) *room.out++ = '?';
    const bool no_room = dstsize == 0 || (dstsize == 1 && error != 0);
    if (error == E2BIG || no_room) {
        printf(">%s: dstsize(%d) is too short\n", function, static_cast<int>(dstsize));
        return fail_null(ERANGE);
    }
    if (static_cast<size_t>(room.out - dst) < dstsize) *room.out = '\0';
    return dst;
}

}  // namespace

char* remote2local_UTF8(char* dst, size_t dstsize, const char* src) {
    if (dst == nullptr || src == nullptr) return fail_null(EINVAL);
    reload_code_page();
    return convert(__func__, Converter(kUtf8, code_page), dst, dstsize, src);
}

char* local2remote_UTF8(char* dst, size_t dstsize, const char* src) {
    if (dst == nullptr || src == nullptr) return fail_null(EINVAL);
    reload_code_page();
    return convert(__func__, Converter(code_page, kUtf8), dst, dstsize, src);
}
