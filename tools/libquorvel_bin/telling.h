// What the command tells people, on standard error: why there is no answer, and what is wrong with a call.
#pragma once

#include <string_view>

#include "command.h"

/// Says "libquorvel_bin: WORD: NAME: REASON" behind all answers given so far, without NAME when it is null. Returns the
/// exit status of an answer that there is none.
[[nodiscard]] int no_answer(const char* word, const char* name, const char* reason);

/// The reason that errno states, or `otherwise` when it states none.
[[nodiscard]] const char* reason_of_errno(const char* otherwise);

/// The reason why a file cannot be read, or `otherwise` when it can.
[[nodiscard]] const char* reason_of_file(const char* path, const char* otherwise);

/// Whether a text is digits only and at most `limit`. Says so otherwise.
[[nodiscard]] bool read_number(const char* word, const char* text, unsigned limit, unsigned& number);

/// Whether a name has a "/" in it, but for a leading "/dev/": such a thing is a path and no device or interface.
[[nodiscard]] bool is_path(std::string_view name);

/// How many letters must be put in, taken out or exchanged to make one word of another; words of up to 31 letters.
[[nodiscard]] unsigned letters_between(std::string_view one, std::string_view other);

/// Whether the first argument of a command is a word it does not know, or comes with too few or too many arguments.
/// Then says so, with the words there are; what the library shows on standard output for such a call is shown, and
/// nothing else is done.
[[nodiscard]] bool is_wrong_subcommand(int argc, char** argv);

/// While it lives, what the library prints on standard output goes to standard error.
struct AnswersAside {
    int saved;
    AnswersAside();
    ~AnswersAside();
    AnswersAside(const AnswersAside&) = delete;
    AnswersAside& operator=(const AnswersAside&) = delete;
};
