#include "report/tools.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "foundation/clock.h"
#include "report/facts.h"

namespace report {

namespace {

constexpr size_t kAtOnce = 8;
constexpr size_t kMostOutput = 256 << 10;
struct Run {
    Tool* tool = nullptr;
    pid_t process = -1;
    quorvel::Descriptor pipe;
    int64_t end = 0;
};

[[nodiscard]] int spawn_with(Run& run, int write_end, posix_spawn_file_actions_t& actions,
                             posix_spawnattr_t& attributes) {
    static char locale[] = "LC_ALL=C";
    static char path[] = "PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";
    char* environment[] = {locale, path, nullptr};
    (void)posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    (void)posix_spawn_file_actions_adddup2(&actions, write_end, STDOUT_FILENO);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    return posix_spawnp(&run.process, run.tool->arguments[0], &actions, &attributes,
                        const_cast<char* const*>(run.tool->arguments), environment);
}

[[nodiscard]] int spawn(Run& run, int write_end) {
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    if (posix_spawn_file_actions_init(&actions) != 0) return ENOMEM;
    int error = posix_spawnattr_init(&attributes);
    if (error == 0) {
        error = spawn_with(run, write_end, actions, attributes);
        posix_spawnattr_destroy(&attributes);
    }
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

void start(Run& run, Tool& tool, int milliseconds) {
    int ends[2];
    run.tool = &tool;
    tool.output.reset(static_cast<char*>(malloc(kMostOutput)));
    if (tool.output == nullptr || pipe2(ends, O_CLOEXEC) != 0) {
        tool.reason = kNoMemory;
        run.tool = nullptr;
        return;
    }
    run.pipe = quorvel::Descriptor(ends[0]);
    const quorvel::Descriptor write_end(ends[1]);
    run.end = quorvel::nanoseconds_now() + milliseconds * quorvel::kMillisecond;
    const int error = spawn(run, write_end.number);
    if (error == 0) return;
    tool.reason = error == ENOENT ? "the tool is not installed" : strerror(error);
    run.tool = nullptr;
    run.pipe = quorvel::Descriptor();
}

// What was not needed is given back: a tool's answer is a page or two.
void finish(Run& run) {
    Tool& tool = *run.tool;
    auto* fitting = static_cast<char*>(realloc(tool.output.get(), tool.length + 1));
    if (fitting != nullptr) {
        (void)tool.output.release();
        tool.output.reset(fitting);
    }
    run.tool = nullptr;
    run.pipe = quorvel::Descriptor();
}

// A process that not even a kill ends (it waits for a device) is left behind.
void end_late(Run& run) {
    run.tool->reason = kTooLate;
    run.tool->length = 0;
    (void)kill(-run.process, SIGKILL);
    (void)kill(run.process, SIGKILL);
    for (int i = 0; i < 20 && waitpid(run.process, nullptr, WNOHANG) == 0; i++)
        (void)poll(nullptr, 0, 5);
    finish(run);
}

// A tool that prints nothing more may still be at work, or wait for a device that it closes: it is asked again.
void end_in_time(Run& run) {
    int status = 0;
    if (waitpid(run.process, &status, WNOHANG) == 0) return;
    if (WIFEXITED(status)) run.tool->exit_status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) run.tool->reason = kCrashed;
    if (run.tool->exit_status == 127) run.tool->reason = "the tool is not installed";
    finish(run);
}

void take_output(Run& run) {
    Tool& tool = *run.tool;
    char dropped[4096];
    const size_t room = kMostOutput - tool.length - 1;
    const ssize_t got =
        read(run.pipe.number, room > 0 ? tool.output.get() + tool.length : dropped, room > 0 ? room : sizeof dropped);
    if (got > 0 && room > 0) tool.length += static_cast<size_t>(got);
    if (got > 0 && room == 0) tool.cut = true;
    if (got == 0 || (got < 0 && errno != EINTR)) run.pipe = quorvel::Descriptor();
}

void wait_for_output(std::span<Run> runs) {
    struct pollfd waits[kAtOnce] = {};
    int64_t first_end = INT64_MAX;
    for (size_t i = 0; i < runs.size(); i++) {
        waits[i] = {runs[i].tool != nullptr ? runs[i].pipe.number : -1, POLLIN, 0};
        if (runs[i].tool == nullptr) continue;
        first_end =
            std::min(first_end, runs[i].pipe ? runs[i].end : quorvel::nanoseconds_now() + quorvel::kMillisecond);
    }
    if (first_end == INT64_MAX) return;
    const int64_t left = std::clamp<int64_t>(
        (first_end - quorvel::nanoseconds_now() + quorvel::kMillisecond - 1) / quorvel::kMillisecond, 0, 60000);
    (void)poll(waits, static_cast<nfds_t>(runs.size()), static_cast<int>(left));
    for (size_t i = 0; i < runs.size(); i++) {
        if (runs[i].tool != nullptr && waits[i].revents != 0) take_output(runs[i]);
        if (runs[i].tool != nullptr && !runs[i].pipe) end_in_time(runs[i]);
        if (runs[i].tool != nullptr && quorvel::nanoseconds_now() >= runs[i].end) end_late(runs[i]);
    }
}

}  // namespace

void run_tools(std::span<Tool> tools, int milliseconds) {
    Run runs[kAtOnce];
    size_t next = 0;
    for (bool busy = true; busy;) {
        busy = false;
        for (Run& run : runs) {
            while (run.tool == nullptr && next < tools.size())
                start(run, tools[next++], milliseconds);
            busy = busy || run.tool != nullptr;
        }
        wait_for_output(runs);
    }
}

}  // namespace report
