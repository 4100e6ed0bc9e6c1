#include "foundation/open_in_time.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/look.h"
#include "foundation/mount_table.h"

namespace quorvel {

namespace {

// A settings file is a hundredth of it, and the boards have little memory.
constexpr size_t kLongestCopy = size_t{4} << 20;

[[nodiscard]] bool copy_content(int from, int to) {
    char block[4096];
    for (size_t copied = 0; copied <= kLongestCopy;) {
        const ssize_t count = read_fully(from, block, sizeof block);
        if (count == 0) return lseek(to, 0, SEEK_SET) == 0;
        if (count < 0 || !write_fully(to, block, static_cast<size_t>(count))) return false;
        copied += static_cast<size_t>(count);
    }
    errno = EFBIG;
    return false;
}

// Whoever may write a file may hold up its readers for as long as a write of his waits for the memory that it is from:
// there are file systems where a reader waits for that.
bool others_may_write(const struct stat& status) {
    return (status.st_uid != 0 && status.st_uid != geteuid()) || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

// A program answers for it, or it tells of a process, which a program may hold up so that nobody can look at it. Where
// an account has mounted it for itself, its type does not tell whether such a file system lies below.
bool may_be_late(int descriptor, const struct statfs& system, const struct stat& status) {
    return system.f_type == FUSE_SUPER_MAGIC || system.f_type == PROC_SUPER_MAGIC || others_may_write(status) ||
           is_mounted_elsewhere(descriptor);
}

// A file without a name. Linux has those in memory from 3.17 on.
[[nodiscard]] Descriptor make_nameless_file() {
    Descriptor file(static_cast<int>(syscall(SYS_memfd_create, "copy", MFD_CLOEXEC)));
    if (file) return file;
    char name[sizeof files::kCopy];
    copy_text(name, sizeof name, files::kCopy);
    file = Descriptor(mkostemp(name, O_CLOEXEC));
    if (file) (void)unlink(name);
    return file;
}

// What such a file brings may be withheld at any time: nothing of it is read but a copy.
[[nodiscard]] Descriptor unwithheld(Descriptor file) {
    struct statfs system;
    struct stat status;
    if (!file || fstatfs(file.number, &system) != 0 || fstat(file.number, &status) != 0) return Descriptor();
    if (!S_ISREG(status.st_mode) || !may_be_late(file.number, system, status)) return file;
    Descriptor copy = make_nameless_file();
    return copy && copy_content(file.number, copy.number) ? static_cast<Descriptor&&>(copy) : Descriptor();
}

struct Opened {
    int number = -1;
    mode_t type = 0;
};

bool open_anything(const char* path, void* answer) {
    auto& opened = *static_cast<Opened*>(answer);
    opened.number = unwithheld(open_for_reading(path)).release();
    return opened.number >= 0;
}

bool open_file_or_directory(const char* path, void* answer) {
    auto& opened = *static_cast<Opened*>(answer);
    Descriptor file = open_for_reading(path, opened.type);
    if (!file && opened.type != 0) errno = EINVAL;
    opened.number = unwithheld(static_cast<Descriptor&&>(file)).release();
    return opened.number >= 0;
}

[[nodiscard]] Descriptor open_elsewhere(Look look, WholeText path, mode_t& type) {
    Opened opened;
    const bool found = look_elsewhere({look, path, &opened, sizeof opened, true});
    type = found ? opened.type : 0;
    return found ? above_standard(opened.number) : Descriptor();
}

}  // namespace

Descriptor open_in_time(WholeText path) {
    mode_t type;
    return may_be_withheld(path) ? open_elsewhere(open_anything, path, type) : open_for_reading(path);
}

Descriptor open_in_time(WholeText path, mode_t& type) {
    return may_be_withheld(path) ? open_elsewhere(open_file_or_directory, path, type) : open_for_reading(path, type);
}

}  // namespace quorvel
