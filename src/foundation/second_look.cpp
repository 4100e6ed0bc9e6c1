#include "foundation/second_look.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/wait.h>

#include "foundation/child.h"
#include "foundation/clock.h"
#include "foundation/files.h"

namespace quorvel {

namespace {

constexpr int64_t kLongestLook = 2 * kSecond;
constexpr int kLongestEnd = 100;  // milliseconds until a killed process is gone, unless a device keeps it

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
    errno = 0;
    if (!question.look(question.path.text, question.answer)) message.error = errno != 0 ? errno : EINVAL;
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
    if (process == 0) look_apart(question, other.number);
    if (process < 0) return false;
    other = Descriptor();
    int error = take_answer(question, own.number);
    end(process);
    errno = error;
    return error == 0;
}

}  // namespace quorvel
