#include "foundation/files.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>

#include "foundation/line_reader.h"

namespace quorvel {

Descriptor open_for_reading(const char* path) {
    if (path == nullptr) return Descriptor();
    return Descriptor(open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
}

Descriptor open_for_reading(const char* path, mode_t& type) {
    Descriptor file = open_for_reading(path);
    struct stat status;
    type = file && fstat(file.number, &status) == 0 ? status.st_mode & S_IFMT : 0;
    return file;
}

Descriptor open_for_update(const char* path) {
    if (path == nullptr) return Descriptor();
    return Descriptor(open(path, O_RDWR | O_CLOEXEC | O_NOCTTY));
}

Directory open_directory(const char* path) {
    return Directory(path != nullptr ? opendir(path) : nullptr);
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

bool path_exists(const char* path) {
    struct stat status;
    return path != nullptr && stat(path, &status) == 0;
}

bool is_dot_entry(const char* name) {
    return strcmp(name, ".") == 0 || strcmp(name, "..") == 0;
}

bool read_link(const char* path, char* text, size_t size) {
    ssize_t length = readlink(path, text, size - 1);
    if (length < 0) return false;
    text[length] = '\0';
    return true;
}

bool read_first_line(const char* path, char* line, size_t size) {
    line[0] = '\0';
    Descriptor file = open_for_reading(path);
    if (!file) return false;
    LineReader reader(file.number, size - 1);
    if (!next_line(reader, line, size)) return false;
    cut_at_line_feed(line);
    return true;
}

}  // namespace quorvel
