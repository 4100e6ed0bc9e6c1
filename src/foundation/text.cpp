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

void print_foreign(std::string_view text) {
    for (char c : text)
        putchar(is_control_byte(c) ? '?' : c);
}

void hide_control_bytes(char* text) {
    for (; *text != '\0'; text++)
        if (is_control_byte(*text)) *text = '?';
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
