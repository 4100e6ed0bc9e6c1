#include "foundation/shell_word.h"

#include <utility>

namespace quorvel {

namespace {

// Outside it are letters and digits, which no shell reads as syntax anywhere.
constexpr char kPlainMarks[] = "+,-./:@_%";

bool is_plain(char c) {
    return is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c != '\0' && strchr(kPlainMarks, c));
}

}  // namespace

ShellWord::ShellWord(const char* word) : plain(word) {
    const bool is_option = *word == '-';
    while (!is_option && is_plain(*word))
        word++;
    if (*word == '\0' && word != plain) return;
    quoted.add(is_option ? "'./" : "'");
    for (const char* c = std::exchange(plain, nullptr); *c != '\0'; c++)
        quoted.add(*c == '\'' ? std::string_view("'\\''") : std::string_view(c, 1));
    quoted.add("'");
}

}  // namespace quorvel
