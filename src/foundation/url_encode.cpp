#include <algorithm>
#include <string_view>

#include "foundation/failure.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

bool is_unreserved(char c) {
    constexpr std::string_view kMarks = "-._~";
    return is_digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || kMarks.find(c) != std::string_view::npos;
}

}  // namespace

int LibQuorvelBin_URLEncode(char* dst, const char* src, size_t size) {
    if (dst == nullptr || src == nullptr) return fail(EINVAL);
    std::string_view text(src);
    size_t kept = static_cast<size_t>(std::count_if(text.begin(), text.end(), is_unreserved));
    // In this order nothing can overflow: each kept byte takes one place, each other one three.
    if (kept >= size || (text.size() - kept) > (size - 1 - kept) / 3) return fail(ERANGE);
    for (char c : text) {
        constexpr char kDigits[] = "0123456789ABCDEF";
        auto byte = static_cast<unsigned char>(c);
        if (is_unreserved(c)) {
            *dst++ = c;
        } else {
            *dst++ = '%';
            *dst++ = kDigits[byte >> 4];
            *dst++ = kDigits[byte & 0xf];
        }
    }
    *dst = '\0';
    return 0;
}
