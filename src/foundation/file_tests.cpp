#include <sys/stat.h>

#include "foundation/files.h"
#include "quorvel/foundation.h"

namespace {

// A path that the caller may not read counts as absent.
int is_readable_of_type(const char* path, mode_t type) {
    quorvel::Descriptor file = quorvel::open_for_reading(path);
    struct stat status;
    return file && fstat(file.number, &status) == 0 && (status.st_mode & S_IFMT) == type ? 1 : 0;
}

}  // namespace

int IsFileExist(const char* path) {
    return is_readable_of_type(path, S_IFREG);
}
int IsDirExist(const char* path) {
    return is_readable_of_type(path, S_IFDIR);
}
