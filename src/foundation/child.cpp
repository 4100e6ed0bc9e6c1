#include "foundation/child.h"

#include <errno.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"

namespace quorvel {

namespace {

// By what it is not, since a descriptor that the caller left may send any other one, by the hand of whoever is at its
// far end.
bool ends_from_outside(int number) {
    switch (number) {
        case SIGILL:
        case SIGTRAP:
        case SIGABRT:
        case SIGBUS:
        case SIGFPE:
        case SIGSEGV:
        case SIGSYS:
        case SIGXFSZ:
        case SIGCHLD:
        case SIGCONT:
        case SIGURG:
        case SIGWINCH:
            return false;
        default:
            return true;
    }
}

// What is closed one by one: a caller seldom leaves more open.
constexpr int kMostInherited = 1024;

// How many scopes hold signals back. Children that other threads start meanwhile ignore them as well.
int holding = 0;

enum class Ending { kUsual, kIgnored };

// What a child is started with; made and given back in one place.
struct SpawnPlan {
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;

    SpawnPlan(const Descriptor& written, Ending ending) {
        sigset_t usual;
        sigset_t mask;
        sigfillset(&usual);
        sigemptyset(&mask);
        for (int number = 1; number < NSIG; number++) {
            if (ending == Ending::kIgnored && ends_from_outside(number)) sigdelset(&usual, number);
        }
        (void)posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        posix_spawnattr_setsigdefault(&attributes, &usual);
        posix_spawnattr_setsigmask(&attributes, &mask);
        (void)posix_spawn_file_actions_init(&actions);
        if (written) (void)posix_spawn_file_actions_adddup2(&actions, written.number, STDOUT_FILENO);
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
};

[[nodiscard]] pid_t spawn_shell(const char* command, const Descriptor& written, Ending ending) {
    char shell[] = "sh";
    char option[] = "-c";
    char* arguments[] = {shell, option, const_cast<char*>(command), nullptr};
    SpawnPlan plan(written, ending);
    pid_t child;
    int error = posix_spawn(&child, files::kShell, &plan.actions, &plan.attributes, arguments, environ);
    if (error != 0) errno = error;
    return error == 0 ? child : -1;
}

[[nodiscard]] int wait_status_of(pid_t child) {
    int status;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return status;
}

// Ignored, or answered by a handler that may take the status of any child.
bool caller_takes_children() {
    struct sigaction action;
    return sigaction(SIGCHLD, nullptr, &action) != 0 || action.sa_handler != SIG_DFL ||
           (action.sa_flags & SA_NOCLDWAIT) != 0;
}

// Nobody waits in vain for the end of something that the second process happens to have open.
void close_from(int first, int kept) {
    const bool below = kept > first && syscall(SYS_close_range, first, kept - 1, 0) != 0;
    const bool above = syscall(SYS_close_range, kept + 1, ~0U, 0) != 0;
    // Older kernels close one by one.
    const int last = below || above ? kMostInherited : first;
    for (int number = first; number < last; number++) {
        if (number != kept) (void)close(number);
    }
}

// A shell clears the mask that it inherits, so signals are held back from a child by ignoring them there; and from its
// first moment on: it is started by a process that ignores them already.
void ignore_ending_signals() {
    for (int number = 1; number < NSIG; number++) {
        if (ends_from_outside(number)) (void)signal(number, SIG_IGN);
    }
}

// Kills a child that has not ended by then: its number is nobody else's before it is waited for.
void end_within(unsigned seconds, pid_t child) {
    sigset_t ended;
    sigemptyset(&ended);
    sigaddset(&ended, SIGCHLD);
    const struct timespec patience = {static_cast<time_t>(seconds), 0};
    int number;
    do {
        number = sigtimedwait(&ended, nullptr, &patience);
    } while (number < 0 && errno == EINTR);
    if (number < 0) (void)kill(child, SIGKILL);
}

// The whole life of the second process, in which every signal is blocked.
[[noreturn]] void keep_child(const char* command, Descriptor& written, const Descriptor& status_pipe, Ending ending,
                             unsigned seconds) {
    struct sigaction at_ends = {};
    at_ends.sa_handler = SIG_DFL;
    at_ends.sa_flags = SA_NOCLDSTOP;
    (void)sigaction(SIGCHLD, &at_ends, nullptr);
    if (ending == Ending::kIgnored) ignore_ending_signals();
    int status = -1;
    pid_t child = spawn_shell(command, written, ending);
    written = Descriptor();
    close_from(STDERR_FILENO + 1, status_pipe.number);
    if (child > 0 && seconds > 0) end_within(seconds, child);
    if (child > 0) status = wait_status_of(child);
    (void)write_fully(status_pipe.number, &status, sizeof status);
    _exit(0);
}

[[nodiscard]] pid_t start_keeper(const char* command, Child& child, Descriptor& written, Ending ending,
                                 unsigned seconds) {
    Pipe status = make_pipe();
    if (!status) return -1;
    child.status = static_cast<Descriptor&&>(status.reading);
    pid_t keeper = fork_undisturbed();
    if (keeper == 0) keep_child(command, written, status.writing, ending, seconds);
    return keeper;
}

}  // namespace

void keep_only(int descriptor) {
    close_from(0, descriptor);
}

sigset_t ending_signals() {
    sigset_t set;
    sigemptyset(&set);
    for (int number = 1; number < NSIG; number++) {
        if (ends_from_outside(number)) sigaddset(&set, number);
    }
    return set;
}

Child start_shell(const char* command, Output output, unsigned seconds) {
    Child child;
    Pipe pipe = output == Output::kRead ? make_pipe() : Pipe();
    if (output == Output::kRead && !pipe) return child;
    child.output = static_cast<Descriptor&&>(pipe.reading);
    const Ending ending = __atomic_load_n(&holding, __ATOMIC_RELAXED) > 0 ? Ending::kIgnored : Ending::kUsual;
    child.pid = ending == Ending::kIgnored || caller_takes_children() || seconds > 0
                    ? start_keeper(command, child, pipe.writing, ending, seconds)
                    : spawn_shell(command, pipe.writing, ending);
    return child.pid > 0 ? static_cast<Child&&>(child) : Child();
}

Pipe make_pipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return {};
    return {above_standard(ends[0]), above_standard(ends[1])};
}

pid_t fork_undisturbed() {
    sigset_t every;
    sigset_t before;
    sigfillset(&every);
    (void)pthread_sigmask(SIG_SETMASK, &every, &before);
    pid_t process = fork();
    if (process != 0) (void)pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return process;
}

int wait_for(Child& child) {
    if (!child) return -1;
    child.output = Descriptor();
    int status = -1;
    if (child.status && read_fully(child.status.number, &status, sizeof status) != sizeof status) status = -1;
    int own = wait_status_of(child.pid);
    if (!child.status) status = own;
    child = Child();
    return status;
}

HeldSignals::HeldSignals() {
    sigset_t ending = ending_signals();
    (void)pthread_sigmask(SIG_BLOCK, &ending, &before);
    __atomic_add_fetch(&holding, 1, __ATOMIC_RELAXED);
}

HeldSignals::~HeldSignals() {
    __atomic_sub_fetch(&holding, 1, __ATOMIC_RELAXED);
    (void)pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace quorvel
