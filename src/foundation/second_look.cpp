#include "foundation/second_look.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/child.h"
#include "foundation/clock.h"
#include "foundation/files.h"

namespace quorvel {

namespace {

constexpr int64_t kLongestLook = 2 * kSecond;
constexpr unsigned kLongestLife = 3;  // seconds
constexpr int kLongestEnd = 100;      // milliseconds until a process that has nothing more to do is gone

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

void tell(Message& message, int socket) {
    (void)sendmsg(socket, &message.header, MSG_NOSIGNAL);
}

// The alarm is the only signal that arrives: who asked has no number that is certain to be this process's still.
void end_in_time() {
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    (void)signal(SIGALRM, SIG_DFL);
    (void)alarm(kLongestLife);
    (void)pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
}

// The whole life of the second process. While it waits for an answer, not even its alarm may end it: it must not have
// the caller's output, whose reader would wait for it as well.
[[noreturn]] void look_apart(const Question& question, int socket) {
    end_in_time();
    keep_only(socket);
    Message message;
    lay_out(message, question);
    errno = 0;
    if (!question.look(question.path.text, question.answer)) message.error = errno != 0 ? errno : EINVAL;
    if (question.brings_descriptor && message.error == 0) enclose(message, *static_cast<int*>(question.answer));
    tell(message, socket);
    _exit(0);
}

// The process between: the second one is no child of the caller's, who may never take its status, or take it for one of
// his own, and whose process may live for years.
[[noreturn]] void start_apart(const Question& question, int socket) {
    const pid_t process = fork();
    if (process == 0) look_apart(question, socket);
    Message message;
    lay_out(message, question);
    message.error = errno;
    if (process < 0) tell(message, socket);
    _exit(0);
}

void wait_for_start(pid_t process) {
    for (int waited = 0; waited < kLongestEnd && waitpid(process, nullptr, WNOHANG) == 0; waited++)
        (void)poll(nullptr, 0, 1);
}

// What the second process has seen; 0, or the reason why nothing.
[[nodiscard]] int take_answer(const Question& question, int socket) {
    int64_t left = kLongestLook;
    if (!arrives_in_time(socket, left)) return ETIMEDOUT;
    Message message;
    lay_out(message, question);
    make_room_for_descriptor(message);
    const auto whole = static_cast<ssize_t>(sizeof message.error + question.size);
    if (recvmsg(socket, &message.header, MSG_CMSG_CLOEXEC) != whole) return EIO;
    if (message.error != 0 || !question.brings_descriptor) return message.error;
    return take_descriptor(message, *static_cast<int*>(question.answer));
}

}  // namespace

bool look_elsewhere(const Question& question) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) return false;
    const Descriptor own = above_standard(ends[0]);
    Descriptor other = above_standard(ends[1]);
    pid_t process = own && other ? fork_undisturbed() : -1;
    if (process == 0) start_apart(question, other.number);
    if (process < 0) return false;
    other = Descriptor();
    int error = take_answer(question, own.number);
    wait_for_start(process);
    errno = error;
    return error == 0;
}

}  // namespace quorvel
