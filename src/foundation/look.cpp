#include "foundation/look.h"

#include <errno.h>
#include <linux/magic.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
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

// The kernel tells the type, the program everything else: a file of its own may call itself root's.
bool is_trusted(int descriptor, mode_t type) {
    struct statfs system;
    struct stat status;
    if (fstatfs(descriptor, &system) != 0 || fstat(descriptor, &status) != 0) return false;
    const bool own = status.st_uid == 0 || status.st_uid == geteuid();
    if (system.f_type != FUSE_SUPER_MAGIC && (status.st_mode & S_IFMT) == type && own) {
        if (type != S_IFREG || status.st_nlink == 1) return true;
    }
    errno = EPERM;
    return false;
}

[[nodiscard]] Descriptor open_as(const char* path, mode_t type) {
    Descriptor file = open_without_link(path);
    return file && is_trusted(file.number, type) ? static_cast<Descriptor&&>(file) : Descriptor();
}

// Its answer is the number of a descriptor.
bool look_into_file(const char* path, void* answer) {
    *static_cast<int*>(answer) = open_as(path, S_IFREG).release();
    return *static_cast<int*>(answer) >= 0;
}

bool look_at_directory(const char* path, void*) {
    return static_cast<bool>(open_as(path, S_IFDIR));
}

// Lines are as long as their mount options: a piece could end inside the type.
bool programs_are_mounted() {
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

// The table tells only of now: with the device an account may mount between this look and the next.
bool programs_may_answer() {
    return path_exists(files::kProgramDevice) || programs_are_mounted();
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

// A look, and whether its answer is the number of a descriptor.
struct Question {
    Look look;
    const char* path;
    void* answer;
    size_t size;
    bool brings_descriptor = false;
};

// What the second process tells: a reason or 0, what it has seen, and the descriptor that is all of that.
struct Message {
    int error = 0;
    struct iovec parts[2] = {};
    alignas(struct cmsghdr) char room[CMSG_SPACE(sizeof(int))] = {};
    struct msghdr header = {};
};

void lay_out(Message& message, const Question& question) {
    message.parts[0] = {&message.error, sizeof message.error};
    message.parts[1] = {question.answer, question.size};
    message.header.msg_iov = message.parts;
    message.header.msg_iovlen = 2;
}

void make_room_for_descriptor(Message& message) {
    message.header.msg_control = message.room;
    message.header.msg_controllen = sizeof message.room;
}

void enclose(Message& message, int descriptor) {
    make_room_for_descriptor(message);
    struct cmsghdr* part = CMSG_FIRSTHDR(&message.header);
    part->cmsg_level = SOL_SOCKET;
    part->cmsg_type = SCM_RIGHTS;
    part->cmsg_len = CMSG_LEN(sizeof descriptor);
    memcpy(CMSG_DATA(part), &descriptor, sizeof descriptor);
}

[[nodiscard]] int take_descriptor(Message& message, int& number) {
    const struct cmsghdr* part = CMSG_FIRSTHDR(&message.header);
    if (part == nullptr || part->cmsg_type != SCM_RIGHTS) return EMFILE;
    memcpy(&number, CMSG_DATA(part), sizeof number);
    return 0;
}

// The whole life of the second process. While it waits for an answer, not even a kill may end it: it must not have the
// caller's output, whose reader would wait for it as well.
[[noreturn]] void look_apart(const Question& question, int socket) {
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    keep_only(socket);
    Message message;
    lay_out(message, question);
    message.error = question.look(question.path, question.answer) ? 0 : errno;
    if (question.brings_descriptor && message.error == 0) enclose(message, *static_cast<int*>(question.answer));
    (void)sendmsg(socket, &message.header, MSG_NOSIGNAL);
    _exit(0);
}

void end(pid_t process) {
    (void)kill(process, SIGKILL);
    for (int waited = 0; waited < kLongestEnd && waitpid(process, nullptr, WNOHANG) == 0; waited++)
        (void)poll(nullptr, 0, 1);
}

// What the second process has seen; 0, or the reason why nothing.
[[nodiscard]] int take_answer(const Question& question, int socket) {
    if (!arrives_in_time(socket)) return ETIMEDOUT;
    Message message;
    lay_out(message, question);
    make_room_for_descriptor(message);
    const auto whole = static_cast<ssize_t>(sizeof message.error + question.size);
    if (recvmsg(socket, &message.header, MSG_CMSG_CLOEXEC) != whole) return EIO;
    if (message.error != 0 || !question.brings_descriptor) return message.error;
    return take_descriptor(message, *static_cast<int*>(question.answer));
}

[[nodiscard]] bool look_elsewhere(const Question& question) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) return false;
    const Descriptor own = above_standard(ends[0]);
    Descriptor other = above_standard(ends[1]);
    pid_t process = own && other ? fork_undisturbed() : -1;
    if (process == 0) look_apart(question, other.number);
    if (process < 0) return false;
    other = Descriptor();
    int error = take_answer(question, own.number);
    end(process);
    errno = error;
    return error == 0;
}

[[nodiscard]] bool ask(const Question& question) {
    if (question.path == nullptr) {
        errno = ENAMETOOLONG;
        return false;
    }
    return programs_may_answer() ? look_elsewhere(question) : question.look(question.path, question.answer);
}

}  // namespace

bool is_answered_by_program(std::string_view type) {
    return type == "fuse" || type.starts_with("fuse.");
}

bool look_in_time(Look look, WholeText path, void* answer, size_t size) {
    return ask({look, path.text, answer, size});
}

bool path_exists_in_time(WholeText path) {
    return look_in_time(look_for_path, path, nullptr, 0);
}

bool read_file_system(WholeText path, struct statfs& facts) {
    return look_in_time(look_at_file_system, path, &facts, sizeof facts);
}

Descriptor open_trusted(WholeText path) {
    int number = -1;
    const Question question = {look_into_file, path.text, &number, sizeof number, true};
    return ask(question) ? above_standard(number) : Descriptor();
}

bool is_trusted_directory(WholeText path) {
    return look_in_time(look_at_directory, path, nullptr, 0);
}

}  // namespace quorvel
