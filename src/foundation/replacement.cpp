#include "foundation/replacement.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <time.h>

#include "foundation/files.h"

namespace quorvel {

namespace {

constexpr mode_t kWidest = 0644;
constexpr size_t kLongestPath = 4096;

// How often a lock is tried, and how long before it is tried again: ten seconds in all.
constexpr int kTries = 2000;
constexpr struct timespec kPause = {0, 5'000'000};

// What is whole, and may be read, is moved into its place within this time.
constexpr time_t kLongestMove = 600;

bool is_own_file(const struct stat& status) {
    return status.st_uid == geteuid();
}

// Who may read a file may also lock it, and never let go: the lock of one that was left over whole tells nothing.
bool may_be_locked_by_others(const struct stat& status) {
    struct timespec now;
    if (is_own_file(status) && (status.st_mode & 077) == 0) return false;
    return clock_gettime(CLOCK_REALTIME, &now) == 0 && now.tv_sec - status.st_mtime > kLongestMove;
}

// Whether it is what a writer makes: when it is whole it belongs to whom the file does whose place it is to take.
bool is_replacement(const struct stat& status, const char* replaced) {
    struct stat old;
    if (!S_ISREG(status.st_mode) || status.st_nlink != 1) return false;
    return is_own_file(status) || (replaced != nullptr && stat(replaced, &old) == 0 && old.st_uid == status.st_uid);
}

// Whether another writer may be at work on what has the name.
bool may_be_held(const char* path, const char* replaced) {
    struct stat status;
    return lstat(path, &status) == 0 && is_replacement(status, replaced) && !may_be_locked_by_others(status);
}

[[nodiscard]] bool is_free(int descriptor) {
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return false;
    errno = ETIMEDOUT;  // what it is when this was the last try
    nanosleep(&kPause, nullptr);
    return false;
}

// Whether a path, itself no link, is the file that is open.
[[nodiscard]] bool is_named(int descriptor, const char* path) {
    struct stat held;
    struct stat named;
    return fstat(descriptor, &held) == 0 && lstat(path, &named) == 0 && is_same_file(held, named);
}

// Removes what has the name, unless another writer holds it. False when it cannot be removed.
[[nodiscard]] bool remove_left_over(const char* path, const char* replaced) {
    if (may_be_held(path, replaced)) {
        Descriptor old = open_without_link(path);
        if (old && !is_free(old.number)) return errno == ETIMEDOUT;
        // Its writer has just moved it into its place.
        if (old && !is_named(old.number, path)) return true;
    }
    return unlink(path) == 0 || errno == ENOENT;
}

}  // namespace

// Whoever takes a new file for one that was left over, in the moment before it is locked, removes it: then it is made
// once more.
Descriptor open_replacement(WholeText path, const char* replaced) {
    if (path.text == nullptr) {
        errno = ENAMETOOLONG;
        return Descriptor();
    }
    for (int tried = 0; tried < kTries; tried++) {
        constexpr int kFlags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY;
        Descriptor file = above_standard(open(path.text, kFlags, 0600));
        if (file) {
            if (is_free(file.number) && is_named(file.number, path.text)) return file;
            continue;
        }
        if (errno != EEXIST) return file;
        errno = 0;
        if (!remove_left_over(path.text, replaced)) return Descriptor();
    }
    errno = ETIMEDOUT;
    return Descriptor();
}

void give_mode_and_owner(int descriptor, const struct stat* replaced) {
    mode_t mode = 0;
    if (replaced != nullptr) {
        // Without the right to give a file away it stays the caller's own, with the mode all the same; but what another
        // account has put there must not run with the caller's rights.
        mode = replaced->st_mode & 0777;
        if (fchown(descriptor, replaced->st_uid, replaced->st_gid) != 0) errno = 0;
    } else {
        // There is no other way to ask for the mask; for that moment it is a strict one.
        mode_t mask = umask(077);
        umask(mask);
        mode = kWidest & ~mask;
    }
    if (fchmod(descriptor, mode) != 0) errno = 0;
}

bool replace_file(WholeText path, std::string_view content) {
    if (path.text == nullptr) {
        errno = ENAMETOOLONG;
        return false;
    }
    Text<kLongestPath> temporary("%s_tmp", path.text);
    Descriptor file = open_replacement(temporary, path.text);
    if (!file) return false;
    struct stat replaced;
    bool there = stat(path.text, &replaced) == 0;
    // What is there and cannot be looked at would get another mode.
    bool whole = (there || errno == ENOENT) && write_fully(file.number, content.data(), content.size());
    if (whole) give_mode_and_owner(file.number, there ? &replaced : nullptr);
    if (whole && fsync(file.number) == 0 && rename(temporary.c_str(), path.text) == 0) return true;
    int error = errno;
    (void)unlink(temporary.c_str());
    errno = error;
    return false;
}

}  // namespace quorvel
