// Questions in turn, each with its answer, and what changes on the appliance in between.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <utility>
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
Words words_of(const std::string& text);

// A text with what its marks stand for.
using Marks = std::vector<std::pair<std::string, std::string>>;
std::string filled(std::string text, const Marks& marks);

// Calls a command entry point with words, and keeps what it returns and prints.
using EntryPoint = int (*)(int, char**);
Answer call(EntryPoint entry_point, Words words);

// Goes through a scenario, a table of three fields:
//     PATH | >  | text        the file gets the text
//     PATH | #! | script      a tool's stand-in gets the script
//     PATH | -> | target      the link gets the target
//     PATH | /  |             the directory is made
//     PATH | -  |             what is there is removed
//     PATH | =  | text        the file must hold the text
//     debug, from_cmdline     in the place of a path: the library's global
//     words | result | text   the words must be answered so
using Ask = std::function<Answer(const Words&)>;
void play(const std::string& name, const Ask& ask, const Marks& marks = {});

// The words go to an entry point.
inline void play(const std::string& name, EntryPoint entry_point, const Marks& marks = {}) {
    play(
        name, [entry_point](const Words& words) { return call(entry_point, words); }, marks);
}
