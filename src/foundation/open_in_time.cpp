#include "foundation/open_in_time.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/look.h"

namespace quorvel {

namespace {

// A settings file is a hundredth of it, and the boards have little memory.
constexpr size_t kLongestCopy = size_t{4} << 20;

enum class Extent : char { kWhole, kStart };

[[nodiscard]] bool copy_content(int from, int to, Extent extent) {
    char block[4096];
    size_t copied = 0;
    ssize_t count = 0;
    while (copied <= kLongestCopy && (count = read_fully(from, block, sizeof block)) > 0) {
        if (!write_fully(to, block, static_cast<size_t>(count))) return false;
        copied += static_cast<size_t>(count);
    }
    if (count > 0 && extent == Extent::kWhole) {
        errno = EFBIG;
        return false;
    }
    return count >= 0 && lseek(to, 0, SEEK_SET) == 0;
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

// Whatever a regular file is on, its reader may be held up: by a program that answers for it or for what lies below it,
// by a process at which nobody can look, or by a lock that a writer keeps. Nothing of it is read but a copy.
[[nodiscard]] Descriptor unwithheld(Descriptor file, Extent extent) {
    struct stat status;
    if (!file || fstat(file.number, &status) != 0) return Descriptor();
    if (!S_ISREG(status.st_mode)) return file;
    Descriptor copy = make_nameless_file();
    return copy && copy_content(file.number, copy.number, extent) ? static_cast<Descriptor&&>(copy) : Descriptor();
}

struct Opened {
    int number = -1;
    mode_t type = 0;
};

template <Extent extent>
bool open_anything(const char* path, void* answer) {
    auto& opened = *static_cast<Opened*>(answer);
    opened.number = unwithheld(open_for_reading(path), extent).release();
    return opened.number >= 0;
}

bool open_file_or_directory(const char* path, void* answer) {
    auto& opened = *static_cast<Opened*>(answer);
    Descriptor file = open_for_reading(path, opened.type);
    if (!file && opened.type != 0) errno = EINVAL;
    opened.number = unwithheld(static_cast<Descriptor&&>(file), Extent::kWhole).release();
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
    return may_be_withheld(path) ? open_elsewhere(open_anything<Extent::kWhole>, path, type) : open_for_reading(path);
}

Descriptor open_start_in_time(WholeText path) {
    mode_t type;
    return may_be_withheld(path) ? open_elsewhere(open_anything<Extent::kStart>, path, type) : open_for_reading(path);
}

Descriptor open_in_time(WholeText path, mode_t& type) {
    return may_be_withheld(path) ? open_elsewhere(open_file_or_directory, path, type) : open_for_reading(path, type);
}

}  // namespace quorvel
