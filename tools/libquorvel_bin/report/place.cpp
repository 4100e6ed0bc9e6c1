#include "report/place.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/handles.h"
#include "foundation/text.h"

namespace report {

namespace {

using quorvel::Descriptor;
using Path = quorvel::Text<4096>;

constexpr int kMostLinks = 40;
constexpr int kDirectory = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

Descriptor start_of(const char* path) {
    return Descriptor(open(path[0] == '/' ? "/" : ".", kDirectory));
}

bool only_caller_writes(const Descriptor& directory) {
    struct stat status;
    if (fstat(directory.number, &status) != 0) return false;
    return (status.st_uid == 0 || status.st_uid == geteuid()) && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// The way behind a link: what it says, and the rest of the way.
[[nodiscard]] bool follow(Descriptor& at, const Path& name, const char* rest, Path& way) {
    char target[4096];
    const ssize_t length = readlinkat(at.number, name.c_str(), target, sizeof target - 1);
    if (length < 0) {
        errno = ENOTDIR;
        return false;
    }
    errno = EPERM;
    if (!only_caller_writes(at)) return false;
    target[length] = '\0';
    if (target[0] == '/') at = start_of(target);
    const Path next("%s/%s", target, rest);
    way = next;
    errno = ENAMETOOLONG;
    return at && !next.cut;
}

[[nodiscard]] bool enter(const Path& directory) {
    Path way = directory;
    Descriptor at = start_of(way.c_str());
    const char* rest = way.c_str();
    for (int links = 0; at && *(rest += strspn(rest, "/")) != '\0';) {
        Path name;
        name.add({rest, strcspn(rest, "/")});
        rest += name.length;
        Descriptor next(openat(at.number, name.c_str(), kDirectory));
        if (next) {
            at = static_cast<Descriptor&&>(next);
            continue;
        }
        if (errno != ENOTDIR && errno != ELOOP) return false;
        if (++links > kMostLinks || !follow(at, name, rest, way)) return false;
        rest = way.c_str();
    }
    return at && fchdir(at.number) == 0;
}

}  // namespace

const char* enter_directory_of(const char* path) {
    const char* slash = strrchr(path, '/');
    if (slash == nullptr) return path;
    Path directory;
    directory.add({path, static_cast<size_t>(slash + 1 - path)});
    if (!directory.cut) return enter(directory) ? slash + 1 : nullptr;
    errno = ENAMETOOLONG;
    return nullptr;
}

}  // namespace report
