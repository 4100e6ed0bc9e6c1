#include "foundation/look.h"

#include <errno.h>
#include <linux/magic.h>
#include <sys/stat.h>

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

// The table tells only of now: with the device an account may mount between this look and the next.
bool programs_may_answer() {
    return path_exists(files::kProgramDevice) || programs_are_mounted();
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

Descriptor open_trusted(WholeText path) {
    int number = -1;
    const Question question = {look_into_file, path.text, &number, sizeof number, true};
    return ask(question) ? above_standard(number) : Descriptor();
}

bool is_trusted_directory(WholeText path) {
    return look_in_time(look_at_directory, path, nullptr, 0);
}

}  // namespace quorvel
