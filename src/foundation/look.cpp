#include "foundation/look.h"

#include <errno.h>
#include <linux/magic.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <algorithm>
#include <iterator>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/mount_table.h"

namespace quorvel {

namespace {

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

// No account mounts anything there, and what the caller has open has its name there: "/dev/fd/3".
bool is_systems_own(const char* path) {
    return !starts_with(path, files::kSharedMemory) && !contains(path, "/..") &&
           std::any_of(std::begin(files::kSystemPlaces), std::end(files::kSystemPlaces),
                       [path](const char* place) { return starts_with(path, place); });
}

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

// What a file brings that a program answers for may be withheld at any time. Before Linux 3.17 there is no such copy.
[[nodiscard]] Descriptor unwithheld(Descriptor file) {
    struct statfs system;
    struct stat status;
    if (!file || fstatfs(file.number, &system) != 0 || fstat(file.number, &status) != 0) return Descriptor();
    if (system.f_type != FUSE_SUPER_MAGIC || !S_ISREG(status.st_mode)) return file;
    Descriptor copy(static_cast<int>(syscall(SYS_memfd_create, "copy", MFD_CLOEXEC)));
    if (!copy) return file;
    return copy_content(file.number, copy.number) ? static_cast<Descriptor&&>(copy) : Descriptor();
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

[[nodiscard]] bool open_elsewhere(Look look, const char* path, Opened& opened) {
    return look_elsewhere({look, path, &opened, sizeof opened, true});
}

// The table tells only of now: with the device an account may mount between this look and the next.
bool programs_may_answer() {
    return path_exists(files::kProgramDevice) || programs_are_mounted();
}

bool is_answered_at_once(WholeText path) {
    return path.text == nullptr || is_systems_own(path.text) || !programs_may_answer();
}

[[nodiscard]] bool ask(const Question& question) {
    if (question.path == nullptr) {
        errno = ENAMETOOLONG;
        return false;
    }
    return programs_may_answer() ? look_elsewhere(question) : question.look(question.path, question.answer);
}

}  // namespace

bool look_in_time(Look look, WholeText path, void* answer, size_t size) {
    return ask({look, path.text, answer, size});
}

bool path_exists_in_time(WholeText path) {
    return look_in_time(look_for_path, path, nullptr, 0);
}

bool read_file_system(WholeText path, struct statfs& facts) {
    return look_in_time(look_at_file_system, path, &facts, sizeof facts);
}

Descriptor open_in_time(WholeText path) {
    if (is_answered_at_once(path)) return open_for_reading(path);
    Opened opened;
    return open_elsewhere(open_anything, path.text, opened) ? above_standard(opened.number) : Descriptor();
}

Descriptor open_in_time(WholeText path, mode_t& type) {
    if (is_answered_at_once(path)) return open_for_reading(path, type);
    Opened opened;
    const bool found = open_elsewhere(open_file_or_directory, path.text, opened);
    type = found ? opened.type : 0;
    return found ? above_standard(opened.number) : Descriptor();
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
