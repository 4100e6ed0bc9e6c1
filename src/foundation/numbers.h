// Numbers in settings, sysfs names and command output. The interface reads them as strtol does:
// leading blanks and a sign are taken, trailing text is ignored, no number gives 0. That leniency
// lives here and nowhere else.
#pragma once

namespace quorvel {

/// strtol base 10, held to the range of the 32-bit boards' long on every machine.
int leading_int(const char* text);

/// The number behind the first occurrence of `word`; false, `number` untouched, when the word does
/// not occur.
bool number_after(const char* text, const char* word, int& number);

/// Whether a text is not empty and every character is a decimal digit.
bool is_all_digits(const char* text);

}  // namespace quorvel
