#include "examples.h"

#include <stdio.h>

#include <string_view>

#include "foundation/text.h"

using quorvel::behind;
using quorvel::front_of;
using quorvel::Text;

namespace {

// The rest of a line; the text goes on behind it.
std::string_view take_line(std::string_view& text) {
    std::string_view line = front_of(text, text.find('\n'));
    text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
    return line;
}

void print_line(const char* before, std::string_view line, const char* behind = "") {
    printf("%s%.*s%s\n", before, static_cast<int>(line.size()), line.data(), behind);
}

// From a line to the status behind it.
void print_from(std::string_view line, std::string_view model, std::string_view rest) {
    print_line("\nFor example, on the sample appliance ", model, ":");
    for (; !line.starts_with("= ") && !rest.empty(); line = take_line(rest))
        print_line("  ", line);
    if (line.starts_with("= ") && line != "= 0") print_line("  with the exit status ", behind(line, 2));
}

}  // namespace

void print_example(const char* word) {
    const Text<64> wanted("$ libquorvel_bin %s ", word);
    std::string_view model;
    for (std::string_view rest = kExampleText; !rest.empty();) {
        std::string_view line = take_line(rest);
        if (line.starts_with("@ ")) model = behind(line, 2);
        // The word may end the line.
        if (!line.starts_with(front_of(view(wanted), wanted.length - 1)) ||
            (line.size() >= wanted.length && line[wanted.length - 1] != ' '))
            continue;
        return print_from(line, model, rest);
    }
}
