#include <sys/stat.h>

#include "foundation/failure.h"
#include "foundation/files.h"
#include "quorvel/foundation.h"

namespace {

// A path that the caller may not read counts as absent.
int is_readable_of_type(const char* path, mode_t type) {
    mode_t found;
    if (path == nullptr) return quorvel::fail(EINVAL, 0);
    quorvel::Descriptor file = quorvel::open_for_reading(path, found);
    return found == type ? 1 : 0;
}

}  // namespace

int IsFileExist(const char* path) {
    return is_readable_of_type(path, S_IFREG);
}
int IsDirExist(const char* path) {
    return is_readable_of_type(path, S_IFDIR);
}
