// Parts of a text, without copies. A position behind the end is the end.
#pragma once

#include <string_view>

#include "foundation/text.h"

namespace report {

using quorvel::behind;
using quorvel::front_of;

/// Takes the field in front of the next separator off a line; all of it when there is none.
[[nodiscard]] inline std::string_view next_field(std::string_view& line, std::string_view separator) {
    const size_t end = line.find(separator);
    const std::string_view field = front_of(line, end);
    line = behind(line, end == std::string_view::npos ? end : end + separator.size());
    return field;
}

/// Takes the first line off a text.
[[nodiscard]] inline std::string_view next_line(std::string_view& text) {
    return next_field(text, "\n");
}

[[nodiscard]] inline std::string_view without_blanks(std::string_view text) {
    text = behind(text, text.find_first_not_of(" \t\r\n"));
    return front_of(text, text.find_last_not_of(" \t\r\n") + 1);
}

}  // namespace report
