#include "foundation/trusted.h"

#include <errno.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

#include "foundation/files.h"
#include "foundation/look.h"

namespace quorvel {

namespace {

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

bool look_into_file(const char* path, void* answer) {
    *static_cast<int*>(answer) = open_as(path, S_IFREG).release();
    return *static_cast<int*>(answer) >= 0;
}

bool look_at_directory(const char* path, void*) {
    return static_cast<bool>(open_as(path, S_IFDIR));
}

}  // namespace

Descriptor open_trusted(WholeText path) {
    int number = -1;
    return look_in_time({look_into_file, path, &number, sizeof number, true}) ? above_standard(number) : Descriptor();
}

bool is_trusted_directory(WholeText path) {
    return look_in_time({look_at_directory, path, nullptr, 0});
}

}  // namespace quorvel
