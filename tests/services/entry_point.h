// Calls a command entry point with words, and keeps what it returns and prints.
#pragma once

#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "support/appliance.h"

using Words = std::vector<std::string>;

struct Answer {
    int result;
    std::string text;
    bool operator==(const Answer&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Answer& answer) {
    return out << answer.result << ' ' << testing::PrintToString(answer.text);
}

// The words of a text, between blanks.
inline Words words_of(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

// A text with what its marks stand for.
using Marks = std::vector<std::pair<std::string, std::string>>;
inline std::string filled(std::string text, const Marks& marks) {
    for (const auto& [mark, meaning] : marks) {
        for (size_t at; (at = text.find(mark)) != text.npos;)
            text.replace(at, mark.size(), meaning);
    }
    return text;
}

inline Answer call(int (*entry_point)(int, char**), Words words) {
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    int result = 0;
    std::string text = printed_by([&] { result = entry_point(static_cast<int>(argv.size()), argv.data()); });
    return {result, text};
}
