// libquorvel_bin COMMAND [ARGUMENT]...: the library's answers for shell scripts. A link named after a command is that
// command.
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "command.h"
#include "examples.h"
#include "json_commands.h"
#include "libquorvel_bin.h"
#include "surroundings.h"
#include "telling.h"

namespace {

constexpr char kName[] = "libquorvel_bin";

const std::span<const Command>* const kTables[] = {
    &kFoundationCommands, &kPlatformCommands, &kNamingCommands,   &kBoardCommands, &kDiskCommands,   &kRaidCommands,
    &kNetCommands,        &kRegistryCommands, &kServicesCommands, &kHwCommands,    &kReportCommands,
};

const Command* find_command(const char* word) {
    for (const auto* table : kTables) {
        for (const Command& command : *table) {
            if (strcmp(command.word, word) == 0) return &command;
        }
    }
    return nullptr;
}

[[nodiscard]] int print_help() {
    printf("Usage: %s COMMAND [ARGUMENT]...\n\nCommands:\n", kName);
    for (const auto* table : kTables) {
        for (const Command& command : *table) {
            printf("  %-22s %-28s %s\n", command.word, command.arguments, command.summary);
        }
    }
    printf(
        "\n%s --help COMMAND tells the exit statuses of one command, with an example; --version prints the "
        "version.\n",
        kName);
    return kExitOk;
}

[[nodiscard]] int print_command_help(const Command& command) {
    printf("Usage: %s %s %s\n%s\nExit status: %s", kName, command.word, command.arguments, command.summary,
           command.statuses);
    // Commands that take any number of arguments count them themselves.
    if (command.least > 0 || command.most >= 0) printf("; %d for a missing or surplus argument", kExitUsage);
    puts(".");
    print_example(command.word);
    return kExitOk;
}

// The command whose word is nearest to a mistyped one; null when more than a third of the letters would have to change.
const Command* nearest_command(const char* word) {
    const Command* nearest = nullptr;
    unsigned limit = static_cast<unsigned>(strlen(word) / 3) + 1;
    for (const auto* table : kTables) {
        for (const Command& command : *table) {
            unsigned letters = letters_between(word, command.word);
            if (letters >= limit) continue;
            limit = letters;
            nearest = &command;
        }
    }
    return nearest;
}

[[nodiscard]] int unknown_command(const char* word) {
    const Command* nearest = nearest_command(word);
    fprintf(stderr, "%s: unknown command '%s'; ", kName, word);
    if (nearest != nullptr) fprintf(stderr, "did you mean '%s'? ", nearest->word);
    fprintf(stderr, "%s --help lists the commands\n", kName);
    return kExitUsage;
}

// The library prints the level that its settings state, which is no answer.
void take_debug_level() {
    char level[128] = "";
    if (get_StringbyKey("/etc/libquorvel_bin.conf", "debug", level, sizeof level) == nullptr) return;
    AnswersAside aside;
    (void)LibQuorvelBin_DebugLevelInit();
}

// Commands that answer by looking, in a few milliseconds, and start no program. Scripts call them in loops, and what
// the caller did with signals does not touch them.
bool only_looks(char** argv) {
    static constexpr const char* kLooking[] = {"diskname", "devname", "disks", "scsiid", "net", "ethinfo", "iscsi"};
    for (const char* word : kLooking) {
        if (strcmp(word, argv[1]) == 0) return true;
    }
    return strcmp(argv[1], "config") == 0 && argv[2] != nullptr && strcmp(argv[2], "read") == 0;
}

// Whoever watches takes 1 of "status" for a verdict.
[[nodiscard]] int without_room(const Command& command, const char* limit) {
    constexpr int kVerdictUnknown = 3;
    fprintf(stderr, "%s: %s: the caller's limit of %s is too low\n", kName, command.word, limit);
    return strcmp(command.word, "status") == 0 ? kVerdictUnknown : kExitNo;
}

[[nodiscard]] int run_command(const Command& command, int argc, char** argv) {
    // With less, what could not be looked at would look as if it were not there.
    const char* limit = only_looks(argv) ? nullptr : low_limit();
    if (limit != nullptr) return without_room(command, limit);
    // In front of every program that is started: with SIGCHLD ignored none of them has a status.
    if (!only_looks(argv)) put_signals_right();
    if (int status = kExitOk; run_as_json(argc, argv, status)) return status;
    int given = argc - 2;
    if (given < command.least || (command.most >= 0 && given > command.most)) {
        fprintf(stderr, "%s: %s: %s argument\nUsage: %s %s %s\n", kName, command.word,
                given < command.least ? "missing" : "surplus", kName, command.word, command.arguments);
        return kExitUsage;
    }
    take_debug_level();
    from_cmdline = 1;
    if (is_wrong_subcommand(argc, argv)) return kExitUsage;
    errno = 0;
    return command.run(argc, argv);
}

[[nodiscard]] int run_word(int argc, char** argv) {
    if (argc < 2) {
        fprintf(stderr, "%s: missing command; %s --help lists the commands\n", kName, kName);
        return kExitUsage;
    }
    const char* word = argv[1];
    if (strcmp(word, "--version") == 0) return printf("%s %s\n", kName, QUORVEL_VERSION) < 0 ? kExitNo : kExitOk;
    if (strcmp(word, "--help") == 0 || strcmp(word, "-h") == 0) {
        if (argc < 3) return print_help();
        const Command* command = find_command(argv[2]);
        return command != nullptr ? print_command_help(*command) : unknown_command(argv[2]);
    }
    const Command* command = find_command(word);
    return command != nullptr ? run_command(*command, argc, argv) : unknown_command(word);
}

// Called through a link named after a command: the word is put where a typed one stands.
[[nodiscard]] int run_link(int argc, char** argv, char* word) {
    constexpr int kMost = 255;
    if (argc > kMost) {
        fprintf(stderr, "%s: %s: more than %d arguments\n", kName, word, kMost);
        return kExitUsage;
    }
    char* words[kMost + 2] = {argv[0], word};
    for (int i = 1; i <= argc; i++)
        words[i + 1] = argv[i];
    return run_word(argc + 1, words);
}

// A buffer of the program's own: no heap is set up for the few lines of an answer. On a terminal lines still appear as
// they are printed.
void give_output_a_buffer() {
    static char buffer[16384];
    (void)setvbuf(stdout, buffer, isatty(STDOUT_FILENO) != 0 ? _IOLBF : _IOFBF, sizeof buffer);
}

// An answer that could not be written was not given.
[[nodiscard]] int finish(int status) {
    if (fflush(stdout) == 0 && ferror(stdout) == 0) return status;
    fprintf(stderr, "%s: cannot write to standard output\n", kName);
    return status != kExitOk ? status : kExitNo;
}

}  // namespace

int main(int argc, char** argv) {
    put_surroundings_right();
    give_output_a_buffer();
    char* name = executed_name();
    if (find_command(name) != nullptr) return finish(run_link(argc, argv, name));
    return finish(run_word(argc, argv));
}
