#include <sys/stat.h>

#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/look.h"
#include "quorvel/foundation.h"

namespace {

bool look_for_type(const char* path, void* answer) {
    auto& found = *static_cast<mode_t*>(answer);
    (void)quorvel::open_for_reading(path, found);
    return found != 0;
}

// A path that the caller may not read counts as absent.
int is_readable_of_type(const char* path, mode_t type) {
    mode_t found = 0;
    if (path == nullptr) return quorvel::fail(EINVAL, 0);
    return quorvel::look_in_time({look_for_type, path, &found, sizeof found}) && found == type ? 1 : 0;
}

}  // namespace

int IsFileExist(const char* path) {
    return is_readable_of_type(path, S_IFREG);
}
int IsDirExist(const char* path) {
    return is_readable_of_type(path, S_IFDIR);
}
