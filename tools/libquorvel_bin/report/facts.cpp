#include "report/facts.h"

#include <string.h>

#include "libquorvel_bin.h"
#include "utf8.h"

namespace report {

namespace {

// A copy with room for the longest sequences that a byte of the code page can become.
[[nodiscard]] quorvel::Heap<char> converted(const char* text, size_t length) {
    const size_t size = 4 * length + 16;
    quorvel::Heap<char> utf8(static_cast<char*>(calloc(1, size)));
    if (utf8 == nullptr || remote2local_UTF8(utf8.get(), size, text) == nullptr) return nullptr;
    // A text that ends in the converter's "?" has lost what stood there.
    const size_t end = strnlen(utf8.get(), size);
    const bool whole = end > 0 && utf8.get()[end - 1] != '?' && is_utf8({utf8.get(), end});
    return whole ? std::move(utf8) : nullptr;
}

}  // namespace

void set(Number& number, int64_t value) {
    number = {value, nullptr};
}

void set(Truth& truth, bool value) {
    truth = {value, nullptr};
}

void set(Words& words, std::string_view text) {
    const size_t size = escaped_size(text.size());
    words.value.reset(static_cast<char*>(malloc(size)));
    words.reason = words.value == nullptr ? kNoMemory : nullptr;
    if (words.value == nullptr) return;
    if (is_utf8(text)) {
        escape_bytes(words.value.get(), size, text, true);
        return;
    }
    quorvel::Heap<char> copy(strndup(text.data(), text.size()));
    quorvel::Heap<char> utf8 = copy != nullptr ? converted(copy.get(), text.size()) : nullptr;
    if (utf8 != nullptr) return set(words, {utf8.get(), strlen(utf8.get())});
    escape_bytes(words.value.get(), size, text, true);
}

void set_unless_negative(Number& number, int64_t value, const char* reason) {
    if (value >= 0) return set(number, value);
    set_unknown(number, reason);
}

void set_unless_empty(Words& words, std::string_view text, const char* reason) {
    if (!text.empty()) return set(words, text);
    set_unknown(words, reason);
}

}  // namespace report
