#include "utf8.h"

#include <string.h>

namespace {

constexpr char kDigits[] = "0123456789abcdef";

struct Lead {
    unsigned char first, last;  // lead bytes of the row
    size_t length;
    unsigned char least, most;  // range of the byte behind them; further bytes are 80 to bf
};

// Unicode's table of well-formed sequences: no overlong forms, no surrogates, nothing above 10ffff.
constexpr Lead kLeads[] = {
    {0x00, 0x7f, 1, 0x00, 0x00},
    {0xc2, 0xdf, 2, 0x80, 0xbf},
    {0xe0, 0xe0, 3, 0xa0, 0xbf},
    {0xe1, 0xec, 3, 0x80, 0xbf},
    {0xed, 0xed, 3, 0x80, 0x9f},
    {0xee, 0xef, 3, 0x80, 0xbf},
    {0xf0, 0xf0, 4, 0x90, 0xbf},
    {0xf1, 0xf3, 4, 0x80, 0xbf},
    {0xf4, 0xf4, 4, 0x80, 0x8f},
};

unsigned char byte_at(std::string_view text, size_t index) {
    return static_cast<unsigned char>(text[index]);
}

bool is_within(unsigned char byte, unsigned char least, unsigned char most) {
    return byte >= least && byte <= most;
}

size_t length_of(const Lead& lead, std::string_view text) {
    if (text.size() < lead.length) return 0;
    if (lead.length > 1 && !is_within(byte_at(text, 1), lead.least, lead.most)) return 0;
    for (size_t i = 2; i < lead.length; i++) {
        if (!is_within(byte_at(text, i), 0x80, 0xbf)) return 0;
    }
    return lead.length;
}

// Those of ASCII, and the second set, which UTF-8 writes as c2 80 to c2 9f.
bool is_control(std::string_view text) {
    const unsigned char first = byte_at(text, 0);
    return first < 0x20 || first == 0x7f || (first == 0xc2 && byte_at(text, 1) < 0xa0);
}

}  // namespace

size_t utf8_sequence(std::string_view text) {
    if (text.empty()) return 0;
    for (const Lead& lead : kLeads) {
        if (is_within(byte_at(text, 0), lead.first, lead.last)) return length_of(lead, text);
    }
    return 0;
}

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const size_t length = utf8_sequence(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

size_t escape_bytes(char* target, size_t size, std::string_view text, bool controls) {
    size_t filled = 0;
    while (!text.empty()) {
        size_t taken = utf8_sequence(text);
        const bool escaped = taken == 0 || (controls && is_control(text));
        if (taken == 0) taken = 1;
        if (filled + (escaped ? 4 * taken : taken) >= size) break;
        for (size_t i = 0; i < taken; i++) {
            if (!escaped) {
                target[filled++] = text[i];
                continue;
            }
            const unsigned char byte = byte_at(text, i);
            const char written[] = {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
            memcpy(target + filled, written, sizeof written);
            filled += sizeof written;
        }
        text.remove_prefix(taken);
    }
    if (size > 0) target[filled] = '\0';
    return filled;
}
