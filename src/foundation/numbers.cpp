#include "foundation/numbers.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "foundation/text.h"

namespace quorvel {

int64_t leading_number(const char* text) {
    return strtoll(text, nullptr, 10);
}

int32_t low_int(const char* text) {
    return static_cast<int32_t>(static_cast<uint64_t>(leading_number(text)));
}

int leading_int(const char* text) {
    return static_cast<int>(std::clamp<int64_t>(leading_number(text), INT_MIN, INT_MAX));
}

std::optional<int32_t> scanned_int(const char* text) {
    char* end;
    int64_t number = strtoll(text, &end, 10);
    if (end == text) return {};
    return static_cast<int32_t>(static_cast<uint64_t>(number));
}

std::optional<int> number_after(const char* text, const char* word) {
    const char* found = strstr(text, word);
    if (found == nullptr) return {};
    return leading_int(found + strlen(word));
}

bool is_all_digits(const char* text) {
    if (*text == '\0') return false;
    while (is_digit(*text))
        text++;
    return *text == '\0';
}

}  // namespace quorvel
