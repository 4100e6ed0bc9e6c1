#include "disk/signature_device.h"

#include <errno.h>
#include <stdio.h>
#include <unistd.h>

#include "foundation/files.h"
#include "foundation/open_in_time.h"

namespace quorvel {

namespace {

bool report_open(const char* path) {
    int reason = errno;
    printf("Err: write file open fail.(%s)\n", path);
    errno = reason;
    return false;
}

bool report_transfer(const char* path) {
    int reason = errno;
    printf("Err: file write fail.(%s)\n", path);
    errno = reason;
    return false;
}

// A pipe knows no places: it has only a start.
bool has_places(int descriptor) {
    return lseek(descriptor, 0, SEEK_CUR) >= 0;
}

[[nodiscard]] ssize_t read_pipe(int descriptor, void* buffer, size_t size, int64_t& left) {
    return arrives_in_time(descriptor, left) ? read(descriptor, buffer, size) : 0;
}

// Up to `size` bytes, or -1.
[[nodiscard]] ssize_t read_at(int descriptor, off_t offset, char* buffer, size_t size) {
    bool places = has_places(descriptor);
    if (!places && offset != 0) return -1;
    int64_t left = kLongestWait;
    size_t done = 0;
    while (done < size) {
        ssize_t count = places ? pread(descriptor, buffer + done, size - done, offset + static_cast<off_t>(done))
                               : read_pipe(descriptor, buffer + done, size - done, left);
        if (count == 0) break;
        if (count < 0 && errno != EINTR) return -1;
        if (count > 0) done += static_cast<size_t>(count);
    }
    if (done < size) errno = ENODATA;
    return static_cast<ssize_t>(done);
}

// Whether all was written.
[[nodiscard]] bool write_at(int descriptor, off_t offset, const char* data, size_t size) {
    if (!has_places(descriptor)) return offset == 0 && write_fully(descriptor, data, size);
    for (size_t done = 0; done < size;) {
        ssize_t count = pwrite(descriptor, data + done, size - done, offset + static_cast<off_t>(done));
        if (count == 0 || (count < 0 && errno != EINTR)) return false;
        if (count > 0) done += static_cast<size_t>(count);
    }
    return true;
}

// A device may take bytes into its cache and fail to store them later: only fsync tells. A special file that knows no
// fsync answers EINVAL.
[[nodiscard]] bool is_stored(int descriptor) {
    return fsync(descriptor) == 0 || errno == EINVAL;
}

}  // namespace

bool read_signature_device(const char* path, off_t offset, void* buffer, size_t size, size_t least) {
    Descriptor device = open_start_in_time(path);
    if (!device) return report_open(path);
    ssize_t count = read_at(device.number, offset, static_cast<char*>(buffer), size);
    return (count >= 0 && static_cast<size_t>(count) >= least) || report_transfer(path);
}

bool write_signature_device(const char* path, off_t offset, const void* data, size_t size) {
    Descriptor device = open_for_update(path);
    if (!device) return report_open(path);
    bool done = write_at(device.number, offset, static_cast<const char*>(data), size) && is_stored(device.number);
    return done || report_transfer(path);
}

}  // namespace quorvel
