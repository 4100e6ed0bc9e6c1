// Bounded text: every path, key and command line the library forms is built in one of these. A text that does not fit
// is cut, stays terminated and says so.
#pragma once

#include <stdarg.h>
#include <stddef.h>
#include <string.h>

#include <string_view>

namespace quorvel {

/// vsnprintf at offset `length` of a buffer; the new length. Sets `cut` when not all of it had room.
[[nodiscard]] __attribute__((format(printf, 5, 0))) size_t format_at(char* buffer, size_t size, size_t length,
                                                                     bool& cut, const char* format, va_list arguments);

/// The same for a text as it is.
[[nodiscard]] size_t add_at(char* buffer, size_t size, size_t length, bool& cut, std::string_view text);

template <size_t Size>
struct Text {
    char chars[Size];
    size_t length = 0;
    bool cut = false;

    Text() { chars[0] = '\0'; }
    __attribute__((format(printf, 2, 3))) explicit Text(const char* format, ...) {
        chars[0] = '\0';
        va_list arguments;
        va_start(arguments, format);
        length = format_at(chars, Size, 0, cut, format, arguments);
        va_end(arguments);
    }
    __attribute__((format(printf, 2, 3))) void append(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        length = format_at(chars, Size, length, cut, format, arguments);
        va_end(arguments);
    }
    // A report of thousands of lines is put together of short parts: those that fit cost no call, a third of all.
    void add(std::string_view text) {
        if (text.size() >= Size - length) {
            length = add_at(chars, Size, length, cut, text);
            return;
        }
        memcpy(chars + length, text.data(), text.size());
        length += text.size();
        chars[length] = '\0';
    }
    void clear() {
        length = 0;
        cut = false;
        chars[0] = '\0';
    }
    [[nodiscard]] const char* c_str() const { return chars; }
};

template <size_t Size>
[[nodiscard]] std::string_view view(const Text<Size>& text) {
    return {text.chars, text.length};
}

/// A text that is all there: what opens, looks at or runs something takes one, since a part of a path or of a command
/// line would be another one. Null for a text that had to be cut.
struct WholeText {
    const char* text;

    WholeText(const char* whole) : text(whole) {}
    template <size_t Size>
    WholeText(const Text<Size>& bounded) : text(bounded.cut ? nullptr : bounded.c_str()) {}
};

/// Copies `source` cut to `size - 1` characters and always terminated.
void copy_text(char* target, size_t size, std::string_view source);

/// The first `count` characters of a text, and what stands behind them; all of a shorter one, and nothing. The standard
/// library's substr would throw, for which a build that does not optimise needs more than the C library.
[[nodiscard]] constexpr std::string_view front_of(std::string_view text, size_t count) {
    return {text.data(), count < text.size() ? count : text.size()};
}
[[nodiscard]] constexpr std::string_view behind(std::string_view text, size_t count) {
    text.remove_prefix(count < text.size() ? count : text.size());
    return text;
}

[[nodiscard]] inline bool starts_with(const char* text, std::string_view prefix) {
    return strncmp(text, prefix.data(), prefix.size()) == 0;
}
[[nodiscard]] inline bool contains(const char* text, const char* part) {
    return strstr(text, part) != nullptr;
}

/// isspace of the "C" locale, whatever locale the caller has set.
[[nodiscard]] inline bool is_blank_character(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
[[nodiscard]] inline bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

/// A byte that a terminal may act on instead of showing it.
[[nodiscard]] inline bool is_control_byte(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
}
/// What UTF-8 begins the control characters of the second set with; 80 to 9f stands behind it.
inline constexpr char kSecondSetLead = '\xc2';
/// Prints a text that somebody else wrote (a disk, another machine): each byte of a control character as "?".
void print_foreign(std::string_view text);
/// The same change in place, for texts that are part of something larger.
void hide_control_bytes(char* text);

/// The text behind the first occurrence of "dev/", or the whole text when it holds none.
[[nodiscard]] const char* without_dev_prefix(const char* name);

/// The text behind the last "/", or the whole text.
[[nodiscard]] const char* last_component(const char* path);

}  // namespace quorvel
