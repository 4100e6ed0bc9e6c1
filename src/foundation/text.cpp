#include "foundation/text.h"

#include <stdio.h>

#include <algorithm>

namespace quorvel {

size_t format_at(char* buffer, size_t size, size_t length, bool& cut, const char* format, va_list arguments) {
    int wanted = vsnprintf(buffer + length, size - length, format, arguments);
    if (wanted < 0) {
        buffer[length] = '\0';
        cut = true;
        return length;
    }
    size_t whole = length + static_cast<size_t>(wanted);
    if (whole >= size) cut = true;
    return std::min(whole, size - 1);
}

size_t add_at(char* buffer, size_t size, size_t length, bool& cut, std::string_view text) {
    size_t room = size - 1 - length;
    if (text.size() > room) cut = true;
    size_t added = std::min(text.size(), room);
    memcpy(buffer + length, text.data(), added);
    buffer[length + added] = '\0';
    return length + added;
}

void copy_text(char* target, size_t size, std::string_view source) {
    size_t length = std::min(source.size(), size - 1);
    memcpy(target, source.data(), length);
    target[length] = '\0';
}

namespace {

// The length of the control character that a text begins with, 0 for none: a byte, or the two by which UTF-8 writes one
// of the second set.
size_t control_length(std::string_view text) {
    if (is_control_byte(text[0])) return 1;
    return text.size() > 1 && text[0] == kSecondSetLead && static_cast<unsigned char>(text[1]) / 0x20 == 4 ? 2 : 0;
}

}  // namespace

void print_foreign(std::string_view text) {
    while (!text.empty()) {
        const size_t hidden = control_length(text);
        fputs(&"??"[2 - hidden], stdout);
        if (hidden == 0) putchar(text[0]);
        text.remove_prefix(std::max<size_t>(hidden, 1));
    }
}

void hide_control_bytes(char* text) {
    const std::string_view whole = text;
    for (size_t i = 0; i < whole.size(); i++)
        memset(text + i, '?', control_length(behind(whole, i)));
}

const char* without_dev_prefix(const char* name) {
    const char* prefix = strstr(name, "dev/");
    return prefix != nullptr ? prefix + strlen("dev/") : name;
}

const char* last_component(const char* path) {
    const char* slash = strrchr(path, '/');
    return slash != nullptr ? slash + 1 : path;
}

}  // namespace quorvel
