// Texts between the appliance's code page and UTF-8, converted by the C library's own converters.
#include <errno.h>
#include <iconv.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>

#include "foundation/appliance_files.h"
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

struct Converter {
    iconv_t handle;

    Converter(const char* target, const char* source) : handle(iconv_open(target, source)) {}
    ~Converter() {
        if (is_open()) (void)iconv_close(handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    bool is_open() const { return reinterpret_cast<intptr_t>(handle) != -1; }
};

// Converts until the input ends or something in it, or the room, stops the conversion for good. 0 when all was
// converted, otherwise the error; `out` is where the next byte goes.
int convert_all(iconv_t converter, const char* source, char*& out, size_t room) {
    char* in = const_cast<char*>(source);
    size_t left = strlen(source);
    while (left > 0) {
        if (iconv(converter, &in, &left, &out, &room) == static_cast<size_t>(-1)) return errno;
    }
    // A stateful code page returns to its first state where there is room for that.
    (void)iconv(converter, nullptr, nullptr, &out, &room);
    return 0;
}

char* convert(const char* function, const Converter& converter, char* dst, size_t dstsize, const char* source) {
    if (!converter.is_open()) {
        trace(kTrace, ">%s: iconv_open() fail\n", function);
        return nullptr;
    }
    const size_t room = std::max<size_t>(dstsize, 1) - 1;
    char* out = dst;
    int error = convert_all(converter.handle, source, out, room);
    if (error != 0 && dstsize > 0) *out++ = '?';
    if (error == E2BIG || dstsize == 0) {
        printf(">%s: dstsize(%d) is too short\n", function, static_cast<int>(dstsize));
        return nullptr;
    }
    if (out <= dst + room) *out = '\0';
    return dst;
}

}  // namespace

char* remote2local_UTF8(char* dst, size_t dstsize, const char* src) {
    if (dst == nullptr || src == nullptr) return nullptr;
    reload_code_page();
    return convert(__func__, Converter(kUtf8, code_page), dst, dstsize, src);
}

char* local2remote_UTF8(char* dst, size_t dstsize, const char* src) {
    if (dst == nullptr || src == nullptr) return nullptr;
    reload_code_page();
    return convert(__func__, Converter(code_page, kUtf8), dst, dstsize, src);
}
