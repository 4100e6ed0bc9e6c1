// Calls a command entry point with words, and keeps what it returns and prints.
#pragma once

#include <ostream>
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

inline Answer call(int (*entry_point)(int, char**), Words words) {
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    int result = 0;
    std::string text = printed_by([&] { result = entry_point(static_cast<int>(argv.size()), argv.data()); });
    return {result, text};
}
