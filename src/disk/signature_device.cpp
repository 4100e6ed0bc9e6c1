#include "disk/signature_device.h"

#include <errno.h>
#include <stdio.h>
#include <unistd.h>

#include "foundation/files.h"

namespace quorvel {

namespace {

bool report_open(const char* path) {
    printf("Err: write file open fail.(%s)\n", path);
    return false;
}

bool report_transfer(const char* path) {
    printf("Err: file write fail.(%s)\n", path);
    return false;
}

// A device may take bytes into its cache and fail to store them later: only fsync tells. A special file
// that knows no fsync answers EINVAL.
bool is_stored(int descriptor) {
    return fsync(descriptor) == 0 || errno == EINVAL;
}

}  // namespace

bool read_signature_device(const char* path, off_t offset, void* buffer, size_t size, size_t least) {
    Descriptor device = open_for_reading(path);
    if (!device) return report_open(path);
    if (lseek(device.number, offset, SEEK_SET) != offset) return report_transfer(path);
    ssize_t count = read_fully(device.number, buffer, size);
    return (count >= 0 && static_cast<size_t>(count) >= least) || report_transfer(path);
}

bool write_signature_device(const char* path, off_t offset, const void* data, size_t size) {
    Descriptor device = open_for_update(path);
    if (!device) return report_open(path);
    bool done = lseek(device.number, offset, SEEK_SET) == offset && write_fully(device.number, data, size) &&
                is_stored(device.number);
    return done || report_transfer(path);
}

}  // namespace quorvel
