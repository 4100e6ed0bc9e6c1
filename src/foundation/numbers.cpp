#include "foundation/numbers.h"

#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <charconv>

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

std::optional<uint32_t> whole_number(std::string_view text) {
    const char* past = text.data() + text.size();
    uint32_t number = 0;
    auto [end, error] = std::from_chars(text.data(), past, number);
    if (error != std::errc() || end != past) return {};
    return number;
}

std::optional<HexadecimalPair> scanned_pair(const char* text) {
    HexadecimalPair pair;
    if (sscanf(text, "[%4x:%4x]", &pair.first, &pair.second) != 2) return {};
    return pair;
}

std::optional<uint64_t> scanned_third(const char* line) {
    int first, second;
    unsigned long long third;
    char fourth[2];
    if (sscanf(line, "%d %d %llu %1s", &first, &second, &third, fourth) != 4) return {};
    return third;
}

bool is_all_digits(const char* text) {
    if (*text == '\0') return false;
    while (is_digit(*text))
        text++;
    return *text == '\0';
}

}  // namespace quorvel
