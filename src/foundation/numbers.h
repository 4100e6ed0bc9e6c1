// Numbers in settings, sysfs names and command output. The interface reads them as strtol does: leading blanks and a
// sign are taken, trailing text is ignored, no number gives 0. That leniency lives here and nowhere else.
#pragma once

#include <stdint.h>

#include <optional>
#include <string_view>

namespace quorvel {

/// The number with all its 64 bits; one beyond them is the largest or smallest there is.
[[nodiscard]] int64_t leading_number(const char* text);

/// Its low 32 bits, for numbers that the interface takes as they are: 4294967306 is 10.
[[nodiscard]] int32_t low_int(const char* text);

/// The number held to the range of an int, for numbers that are compared with a limit: the true one decides, however
/// long it is.
[[nodiscard]] int leading_int(const char* text);

/// The number as scanf's "%d" reads it: blanks and a sign are taken, only the low 32 bits count; none without a digit.
[[nodiscard]] std::optional<int32_t> scanned_int(const char* text);

/// The number behind the first occurrence of `word`, as leading_int; none when the word does not occur.
[[nodiscard]] std::optional<int> number_after(const char* text, const char* word);

/// A text that is nothing but a decimal number of 32 bits without a sign.
[[nodiscard]] std::optional<uint32_t> whole_number(std::string_view text);

/// The two numbers of "[VVVV:DDDD]" as scanf reads them: at most four hexadecimal digits each.
struct HexadecimalPair {
    unsigned first, second;
};
[[nodiscard]] std::optional<HexadecimalPair> scanned_pair(const char* text);

/// The third of a line's four words as scanf reads them: none unless the first three are numbers.
[[nodiscard]] std::optional<uint64_t> scanned_third(const char* line);

/// One number up or down, for counts that begin at 0 on one side and at 1 on the other; wraps.
[[nodiscard]] constexpr int number_moved(int number, int by) {
    return static_cast<int>(static_cast<unsigned>(number) + static_cast<unsigned>(by));
}

/// Whether a text is not empty and every character is a decimal digit.
[[nodiscard]] bool is_all_digits(const char* text);

}  // namespace quorvel
