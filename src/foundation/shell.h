// Commands run through the shell: run one, walk the lines it prints, or capture all it prints
// (ExecPipe). A command line that had to be cut is never run: half a command could do anything.
#pragma once

#include <stdio.h>

#include "foundation/handles.h"
#include "foundation/line_reader.h"
#include "foundation/shell_word.h"

namespace quorvel {

/// Runs a command with system(3), after what was printed so far is out. Its wait status, or -1 when
/// it was not run.
int run_command(const char* command);

template <size_t Size>
int run_command(const Text<Size>& command) {
    return command.cut ? -1 : run_command(command.c_str());
}

/// A command whose standard output is being read. Its error output stays the caller's.
struct CommandOutput {
    /// `piece_limit` is the longest piece of a line, as in LineReader.
    CommandOutput(const char* command, size_t piece_limit);
    template <size_t Size>
    CommandOutput(const Text<Size>& command, size_t piece_limit)
        : CommandOutput(command.cut ? nullptr : command.c_str(), piece_limit) {}
    ~CommandOutput() { finish(); }
    CommandOutput(const CommandOutput&) = delete;
    CommandOutput& operator=(const CommandOutput&) = delete;

    /// Whether the pipe and its shell were made; `errno` tells why not.
    explicit operator bool() const { return pipe != nullptr; }
    /// Closes the pipe and waits for the command: its wait status, or -1.
    int finish();

    FILE* pipe;
    LineReader lines;
};

/// Whether a wait status says that the shell did not find the command (127) or could not execute it
/// (126).
bool could_not_execute(int wait_status);

/// A command's whole output as text, or null when ExecPipe failed; `status` gets its result.
Heap<char> capture_command(const char* command, int& status);

}  // namespace quorvel
