#include "foundation/mounted.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>

#include "foundation/appliance_files.h"
#include "foundation/child.h"
#include "foundation/files.h"

namespace quorvel {

namespace {

constexpr int kLongestLook = 2000;  // milliseconds
constexpr int kLongestEnd = 100;    // until a killed process is gone, unless a device keeps it

bool look_for_path(const char* path, void*) {
    struct stat status;
    return stat(path, &status) == 0;
}

bool look_at_file_system(const char* path, void* answer) {
    auto* facts = static_cast<struct statfs*>(answer);
    if (statfs(path, facts) != 0) return false;
    if (facts->f_frsize == 0) facts->f_frsize = facts->f_bsize;  // as a file system without fragments may leave it
    return true;
}

// Lines are as long as their mount options: a piece could end inside the type.
bool programs_answer() {
    Descriptor mounts = open_for_reading(files::kMounts);
    File lines(mounts ? fdopen(mounts.number, "r") : nullptr);
    if (!lines) return false;
    (void)mounts.release();  // the stream has it
    char* line = nullptr;
    size_t room = 0;
    bool found = false;
    while (!found && getline(&line, &room, lines.get()) > 0)
        found = contains(line, " fuse ") || contains(line, " fuse.");
    free(line);
    return found;
}

int milliseconds_since(const struct timespec& start) {
    struct timespec now = {};
    (void)clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int>((now.tv_sec - start.tv_sec) * 1000 + (now.tv_nsec - start.tv_nsec) / 1'000'000);
}

bool arrives_in_time(int pipe) {
    struct timespec start = {};
    (void)clock_gettime(CLOCK_MONOTONIC, &start);
    for (int left = kLongestLook; left > 0; left = kLongestLook - milliseconds_since(start)) {
        struct pollfd wait = {pipe, POLLIN, 0};
        int ready = poll(&wait, 1, left);
        if (ready > 0 || (ready < 0 && errno != EINTR)) return ready > 0;
    }
    return false;
}

// The whole life of the second process. It must not outlive a caller that is ended: it has the caller's output.
[[noreturn]] void look_apart(Look look, const char* path, void* answer, size_t size, int pipe) {
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    int error = look(path, answer) ? 0 : errno;
    if (write_fully(pipe, &error, sizeof error)) (void)write_fully(pipe, answer, size);
    _exit(0);
}

void end(pid_t process) {
    (void)kill(process, SIGKILL);
    for (int waited = 0; waited < kLongestEnd && waitpid(process, nullptr, WNOHANG) == 0; waited++)
        (void)poll(nullptr, 0, 1);
}

// What the second process has seen; 0, or the reason why nothing.
[[nodiscard]] int take_answer(int pipe, void* answer, size_t size) {
    int error;
    if (!arrives_in_time(pipe)) return ETIMEDOUT;
    if (read_fully(pipe, &error, sizeof error) != sizeof error) return EIO;
    return error != 0 || read_fully(pipe, answer, size) == static_cast<ssize_t>(size) ? error : EIO;
}

[[nodiscard]] bool look_elsewhere(Look look, const char* path, void* answer, size_t size) {
    Pipe pipe = make_pipe();
    pid_t process = pipe ? fork_undisturbed() : -1;
    if (process == 0) look_apart(look, path, answer, size, pipe.writing.number);
    if (process < 0) return false;
    pipe.writing = Descriptor();
    int error = take_answer(pipe.reading.number, answer, size);
    end(process);
    errno = error;
    return error == 0;
}

}  // namespace

bool is_answered_by_program(std::string_view type) {
    return type == "fuse" || type.starts_with("fuse.");
}

bool look_in_time(Look look, WholeText path, void* answer, size_t size) {
    if (path.text == nullptr) {
        errno = ENAMETOOLONG;
        return false;
    }
    return programs_answer() ? look_elsewhere(look, path.text, answer, size) : look(path.text, answer);
}

bool path_exists_in_time(WholeText path) {
    return look_in_time(look_for_path, path, nullptr, 0);
}

bool read_file_system(WholeText path, struct statfs& facts) {
    return look_in_time(look_at_file_system, path, &facts, sizeof facts);
}

}  // namespace quorvel
