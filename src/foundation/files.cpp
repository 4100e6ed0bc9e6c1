#include "foundation/files.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <string.h>
#include <sys/stat.h>

#include "foundation/clock.h"
#include "foundation/line_reader.h"

namespace quorvel {

namespace {

constexpr int kReadFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

[[nodiscard]] Descriptor open_path(WholeText path, int flags, mode_t mode = 0) {
    if (path.text == nullptr) {
        errno = ENAMETOOLONG;
        return Descriptor();
    }
    return above_standard(open(path.text, flags, mode));
}

mode_t type_of(const struct stat& status) {
    return status.st_mode & S_IFMT;
}

}  // namespace

// close() is not repeated on EINTR: on Linux the descriptor is gone either way.
void Descriptor::close_now() {
    if (number >= 0) (void)close(number);
}

Descriptor above_standard(int descriptor) {
    if (descriptor < 0 || descriptor > STDERR_FILENO) return Descriptor(descriptor);
    Descriptor standard(descriptor);
    return Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

Descriptor open_for_reading(WholeText path) {
    return open_path(path, kReadFlags);
}

Descriptor open_without_link(WholeText path) {
    return open_path(path, kReadFlags | O_NOFOLLOW);
}

Descriptor open_for_reading(WholeText path, mode_t& type) {
    struct stat status;
    if (path.text == nullptr) errno = ENAMETOOLONG;
    type = path.text != nullptr && stat(path.text, &status) == 0 ? type_of(status) : 0;
    if (type != S_IFREG && type != S_IFDIR) return Descriptor();
    Descriptor file = open_path(path, kReadFlags);
    type = file && fstat(file.number, &status) == 0 ? type_of(status) : 0;
    return file;
}

Descriptor open_for_update(WholeText path, int flags) {
    return open_path(path, O_RDWR | O_CLOEXEC | O_NOCTTY | flags);
}

Descriptor create_anew(WholeText path, mode_t mode) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    Descriptor file = open_path(path, kFlags, mode);
    if (file || errno != EEXIST || unlink(path.text) != 0) return file;
    return open_path(path, kFlags, mode);
}

Descriptor open_or_create(WholeText path, mode_t mode) {
    return open_path(path, O_WRONLY | O_CREAT | O_NOCTTY | O_NONBLOCK | O_CLOEXEC, mode);
}

Directory open_directory(WholeText path) {
    return Directory(path.text != nullptr ? opendir(path.text) : nullptr);
}

ssize_t read_fully(int descriptor, void* buffer, size_t size) {
    size_t done = 0;
    while (done < size) {
        ssize_t count = read(descriptor, static_cast<char*>(buffer) + done, size - done);
        if (count == 0) break;
        if (count < 0) {
            if (errno == EINTR) continue;
            return -1;
        }
        done += static_cast<size_t>(count);
    }
    return static_cast<ssize_t>(done);
}

bool write_fully(int descriptor, const void* data, size_t size) {
    size_t done = 0;
    while (done < size) {
        ssize_t count = write(descriptor, static_cast<const char*>(data) + done, size - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        done += static_cast<size_t>(count);
    }
    return true;
}

bool arrives_in_time(int descriptor, int64_t& left) {
    while (left > 0) {
        struct pollfd wait = {descriptor, POLLIN, 0};
        const int64_t begun = nanoseconds_now();
        const int ready = poll(&wait, 1, static_cast<int>((left + kMillisecond - 1) / kMillisecond));
        left -= nanoseconds_now() - begun;
        if (ready > 0 || (ready < 0 && errno != EINTR)) return ready > 0;
    }
    return false;
}

bool path_exists(WholeText path) {
    struct stat status;
    return path.text != nullptr && stat(path.text, &status) == 0;
}

bool is_dot_entry(const char* name) {
    return strcmp(name, ".") == 0 || strcmp(name, "..") == 0;
}

bool read_link(WholeText path, char* text, size_t size) {
    if (path.text == nullptr) return false;
    ssize_t length = readlink(path.text, text, size - 1);
    if (length < 0) return false;
    text[length] = '\0';
    return true;
}

bool read_first_line(WholeText path, char* line, size_t size) {
    line[0] = '\0';
    LineFile file(open_for_reading(path), size - 1);
    if (!next_line(file.reader, line, size)) {
        if (file && !file.reader.failed) errno = ENODATA;
        return false;
    }
    cut_at_line_feed(line);
    return true;
}

}  // namespace quorvel
