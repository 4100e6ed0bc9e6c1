// The one starter of child processes. A child begins with every signal at its default, whatever the caller has set, and
// inherits nothing that the library opened but its standard output. Its end is learned whatever the caller does with
// SIGCHLD: where that is not at its default, a second process waits for the command and passes its status on; so does
// one that starts it while signals are held back, and one that ends it in time.
#pragma once

#include <signal.h>
#include <sys/types.h>

#include "foundation/handles.h"

namespace quorvel {

/// A child that was started, or pid -1.
struct Child {
    pid_t pid = -1;
    Descriptor output;  // what reads its standard output, where that was asked for
    Descriptor status;  // where its status arrives, when a second process waits for it

    explicit operator bool() const { return pid > 0; }
};

enum class Output { kOfCaller, kRead };

/// Starts "sh -c COMMAND". On failure no child, and errno. `seconds` above 0 kill what has not ended by then: the
/// shell, or in its place what the command begins with "exec".
[[nodiscard]] Child start_shell(const char* command, Output output, unsigned seconds = 0);

/// Waits for a child's end; its wait status, or -1 without one.
[[nodiscard]] int wait_for(Child& child);

/// A pipe whose ends are closed on exec and are none of the standard descriptors; false when there is none (errno).
struct Pipe {
    Descriptor reading, writing;

    explicit operator bool() const { return reading && writing; }
};
[[nodiscard]] Pipe make_pipe();

/// fork(2) for a process that only waits for others: no handler of the caller's runs in it, and no signal ends it
/// first.
[[nodiscard]] pid_t fork_undisturbed();

/// Closes every descriptor but one, in such a process.
void keep_only(int descriptor);

/// The signals that end or stop a process and do not report a fault of its own.
[[nodiscard]] sigset_t ending_signals();

/// Holds back the signals that end a process, in this thread and in children that it starts, for as long as it lives:
/// what was begun is finished. One that arrived meanwhile is taken at the end.
struct HeldSignals {
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    sigset_t before;
};

}  // namespace quorvel
