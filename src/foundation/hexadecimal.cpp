#include <string.h>

#include <algorithm>
#include <string_view>

#include "foundation/failure.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr int kLongestHex = 16;
constexpr int32_t kTooLong = -7;

int digit_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

int32_t LibQuorvelBin_HexToUl(const char* hex, int length) {
    if (hex == nullptr) return fail(EINVAL, kTooLong);
    int shown = std::max(length, 0);
    trace(kTrace, "hex=%.*s\nlen=%d\n", shown, hex, length);
    if (length > kLongestHex) return fail(EINVAL, kTooLong);

    std::string_view rest(hex, strnlen(hex, static_cast<size_t>(shown)));
    if (rest.starts_with("0x") || rest.starts_with("0X")) rest.remove_prefix(2);
    uint32_t value = 0;
    for (; !rest.empty() && digit_value(rest[0]) >= 0; rest.remove_prefix(1)) {
        trace(kTrace, "p=%.*s\n", static_cast<int>(rest.size()), rest.data());
        value = value * 16 + static_cast<uint32_t>(digit_value(rest[0]));
    }
    return static_cast<int32_t>(value);
}
