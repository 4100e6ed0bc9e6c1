#include "foundation/numbers.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "foundation/text.h"

namespace quorvel {

int leading_int(const char* text) {
    return static_cast<int>(std::clamp<long long>(strtoll(text, nullptr, 10), INT_MIN, INT_MAX));
}

bool number_after(const char* text, const char* word, int& number) {
    const char* found = strstr(text, word);
    if (found == nullptr) return false;
    number = leading_int(found + strlen(word));
    return true;
}

bool is_all_digits(const char* text) {
    if (*text == '\0') return false;
    while (is_digit(*text))
        text++;
    return *text == '\0';
}

}  // namespace quorvel
