// The trial mount. What a strange disk holds is mounted where nobody else can run it or keep it mounted: in a mount
// namespace that ends with the call.
#include <errno.h>
#include <sched.h>
#include <signal.h>
#include <stdio.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/shell.h"
#include "foundation/trusted.h"
#include "quorvel/disk.h"

using namespace quorvel;

namespace {

using Command = Text<kCommandSize>;

// How the commands are to run: hidden in the namespace, in the caller's sight, or not at all.
enum class Sight : char { kHidden, kOpen, kNone };

// ---- The process that has the namespace ----

// Nothing that is mounted from here on is seen outside, or the other way round. Only where this can never be had, for
// want of the right, of a root or of the kernel, or because none are allowed, is the mount to be seen: whoever takes
// the descriptors or the memory for a moment must not bring a strange disk into view.
Sight hide() {
    if (unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0)
        return Sight::kHidden;
    switch (errno) {
        case EPERM:
        case EINVAL:
        case ENOSYS:
        case ENOSPC:
            return Sight::kOpen;
        default:
            return Sight::kNone;
    }
}

void run(const Command& command) {
    Child child = start_shell(command.c_str(), Output::kOfCaller);
    (void)wait_for(child);  // a failed mount has probed the device as well
}

// Tells through the pipe how the commands are to run, when they ran hidden.
[[noreturn]] void run_hidden(const Command& mount_it, const Command& unmount_it, int answer) {
    signal(SIGCHLD, SIG_DFL);
    const Sight sight = hide();
    if (sight == Sight::kHidden) {
        run(mount_it);
        run(unmount_it);
    }
    (void)write_fully(answer, &sight, sizeof sight);
    _exit(0);
}

[[nodiscard]] Sight try_hidden(const Command& mount_it, const Command& unmount_it) {
    Pipe answer = make_pipe();
    if (!answer) return Sight::kNone;
    (void)fflush(stdout);
    pid_t process = fork_undisturbed();
    if (process == 0) run_hidden(mount_it, unmount_it, answer.writing.number);
    answer.writing = Descriptor();
    Sight sight = Sight::kNone;
    if (process > 0 && read_fully(answer.reading.number, &sight, sizeof sight) != sizeof sight) sight = Sight::kNone;
    while (process > 0 && waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
    return sight;
}

}  // namespace

int LibQuorvelBin_MountTest(const char* device) {
    if (device == nullptr) return fail(EINVAL, 0);
    Command mount_it("%s %s %s", files::kMountTool, ShellWord(device).c_str(), files::kTrialMountPoint);
    Command unmount_it("%s -f %s", files::kUnmountTool, files::kTrialMountPoint);
    if (mount_it.cut) return fail(E2BIG, 0);
    bool made = mkdir(files::kTrialMountPoint, S_IRWXU) == 0;
    if (!made && !is_trusted_directory(files::kTrialMountPoint)) return 0;
    if (try_hidden(mount_it, unmount_it) == Sight::kOpen) {
        (void)run_command(mount_it);  // a failed mount has probed the device as well
        (void)run_command(unmount_it);
    }
    // Only the empty directory: if the device is still mounted there, what is on it must stay.
    if (made) (void)rmdir(files::kTrialMountPoint);
    return 0;
}
