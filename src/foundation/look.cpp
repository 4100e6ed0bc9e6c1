#include "foundation/look.h"

#include <errno.h>
#include <string.h>

#include <algorithm>
#include <span>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/mount_table.h"

namespace quorvel {

namespace {

bool is_below(const char* path, std::span<const files::Place> places) {
    return std::any_of(places.begin(), places.end(), [path](const char* place) { return starts_with(path, place); });
}

// Right below /dev is the system's own; deeper, as below /sys/fs, are places where accounts make files and directories
// of theirs, over which they mount. What the caller has open has its name there, too: "/dev/fd/3" leads to
// "/proc/self/fd/3". A path that is written in another way than it has to be may lead out of the place that it begins
// with, and what /proc tells of a process leads to what that one has open, and waits for its memory.
bool is_systems_own(const char* path) {
    if (contains(path, "//") || contains(path, "/.")) return false;
    if (is_device_path(path) || is_below(path, files::kSystemPlaces)) return true;
    return starts_with(path, files::kProc) && !is_digit(path[strlen(files::kProc)]) &&
           !is_below(path, files::kOwnProcess);
}

bool look_at_status(const char* path, void* answer) {
    return stat(path, static_cast<struct stat*>(answer)) == 0;
}

bool look_at_file_system(const char* path, void* answer) {
    auto* facts = static_cast<struct statfs*>(answer);
    if (statfs(path, facts) != 0) return false;
    if (facts->f_frsize == 0) facts->f_frsize = facts->f_bsize;  // as a file system without fragments may leave it
    return true;
}

}  // namespace

bool is_device_path(const char* path) {
    return starts_with(path, files::kNodes) && last_component(path) == path + strlen(files::kNodes);
}

// The table tells only of now: with the device an account may mount between this look and the next.
bool may_be_withheld(WholeText path) {
    const KeptErrno kept;
    return path.text != nullptr && !is_systems_own(path.text) &&
           (path_exists(files::kProgramDevice) || programs_are_mounted());
}

bool look_in_time(const Question& question) {
    if (question.path.text == nullptr) {
        errno = ENAMETOOLONG;
        return false;
    }
    if (may_be_withheld(question.path)) return look_elsewhere(question);
    return question.look(question.path.text, question.answer);
}

bool path_exists_in_time(WholeText path) {
    struct stat status;
    return read_status(path, status);
}

bool read_status(WholeText path, struct stat& status) {
    return look_in_time({look_at_status, path, &status, sizeof status});
}

bool read_file_system(WholeText path, struct statfs& facts) {
    return look_in_time({look_at_file_system, path, &facts, sizeof facts});
}

}  // namespace quorvel
