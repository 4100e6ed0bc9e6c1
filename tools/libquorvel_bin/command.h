// One row per command word of the front end. The rooms of the subsystems each hold a table; main.cpp walks them.
#pragma once

#include <stdio.h>

#include <span>

struct Command {
    const char* word;
    const char* arguments;  // as --help shows them: "DEVICE [SIZE]"
    const char* summary;    // one line
    const char* statuses;   // exit statuses in words: "0 found, 1 not found"
    int least;              // arguments behind the word that must be there
    int most;               // ... and that may be there; -1 for any number
    // Gets the front end's whole vector: argv[0] the front end, argv[1] the word. Returns the exit status.
    int (*run)(int argc, char** argv);
};

// Exit statuses that every command shares.
inline constexpr int kExitOk = 0;
inline constexpr int kExitNo = 1;     // the question was answered with no, or could not be answered
inline constexpr int kExitUsage = 2;  // unknown command, missing or surplus argument
// Of the commands that look before they write or erase: refused, with the reason on standard error, and nothing done.
inline constexpr int kExitRefused = 3;

[[nodiscard]] inline int exit_status_of_result(int result) {
    return result == 0 ? kExitOk : kExitNo;
}

// Prints the answer of a yes-or-no question as 1 or 0; its status says the same.
[[nodiscard]] inline int print_predicate(int answer) {
    printf("%d\n", answer);
    return answer == 1 ? kExitOk : kExitNo;
}

extern const std::span<const Command> kFoundationCommands;
extern const std::span<const Command> kPlatformCommands;
extern const std::span<const Command> kNamingCommands;
extern const std::span<const Command> kBoardCommands;
extern const std::span<const Command> kDiskCommands;
extern const std::span<const Command> kRaidCommands;
extern const std::span<const Command> kNetCommands;
extern const std::span<const Command> kRegistryCommands;
extern const std::span<const Command> kServicesCommands;
extern const std::span<const Command> kHwCommands;
extern const std::span<const Command> kReportCommands;
