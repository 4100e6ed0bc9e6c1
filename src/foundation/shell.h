// Commands run through the shell: run one, walk the lines it prints, or capture all it prints (ExecPipe). A command
// line that had to be cut is never run: half a command could do anything.
#pragma once

#include "foundation/child.h"
#include "foundation/handles.h"
#include "foundation/line_reader.h"
#include "foundation/shell_word.h"

namespace quorvel {

/// Runs a command, after what was printed so far is out, and waits for its end. Its wait status, or -1 when it was not
/// run.
[[nodiscard]] int run_command(WholeText command);

/// A command whose standard output is being read. Its error output stays the caller's.
struct CommandOutput {
    /// `piece_limit` is the longest piece of a line, as in LineReader; `seconds` as for start_shell.
    CommandOutput(WholeText command, size_t piece_limit, unsigned seconds = 0);
    // Who wants to know the status has asked for it.
    ~CommandOutput() { (void)finish(); }
    CommandOutput(const CommandOutput&) = delete;
    CommandOutput& operator=(const CommandOutput&) = delete;

    /// Whether the pipe and its shell were made; `errno` tells why not.
    explicit operator bool() const { return static_cast<bool>(child); }
    /// Closes the pipe and waits for the command: its wait status, or -1.
    [[nodiscard]] int finish();

    Child child;
    LineReader lines;
};
[[nodiscard]] inline LineIterator begin(CommandOutput& command) {
    return begin(command.lines);
}
[[nodiscard]] inline std::nullptr_t end(CommandOutput&) {
    return nullptr;
}

/// Whether a wait status says that the shell did not find the command (127) or could not execute it (126).
[[nodiscard]] bool could_not_execute(int wait_status);

/// A command's whole output as text, null when there is none, and what ExecPipe answered.
struct Captured {
    Heap<char> output;
    int status;
};
[[nodiscard]] Captured capture_command(WholeText command);

}  // namespace quorvel
