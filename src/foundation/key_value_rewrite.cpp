// Rewriting a key=value file: everything but one key goes to a temporary file beside it, which then
// takes its place.
#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/line_reader.h"
#include "foundation/shell.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr size_t kWriterPiece = 255;
constexpr size_t kWriterText = 256;  // the temporary name, and the command that moves it into place
constexpr int kDelete = 2;

// Writers of one file share one temporary name, so each holds a lock on it until its file is in
// place. Whoever waited finds that the file it has locked is no longer the one of that name, and
// opens the name again.
Descriptor open_temporary(const char* path) {
    for (;;) {
        Descriptor file(open(path, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY, 0666));
        if (!file) return file;
        while (flock(file.number, LOCK_EX) != 0 && errno == EINTR) {
        }
        struct stat held;
        struct stat named;
        if (fstat(file.number, &held) != 0) return Descriptor();
        if (stat(path, &named) == 0 && held.st_ino == named.st_ino && held.st_dev == named.st_dev) {
            return ftruncate(file.number, 0) == 0 ? static_cast<Descriptor&&>(file) : Descriptor();
        }
    }
}

// Only a file that does not exist counts as empty; `source` then stays closed.
bool open_source(const char* path, Descriptor& source, struct stat& status) {
    source = open_for_reading(path);
    if (!source) return errno == ENOENT;
    if (fstat(source.number, &status) != 0) return false;
    if (S_ISREG(status.st_mode)) return true;
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return false;
}

void keep_mode_and_owner(int descriptor, const struct stat& status) {
    // Without the right to give a file away it stays the caller's own, with the mode all the same.
    if (fchown(descriptor, status.st_uid, status.st_gid) != 0) errno = 0;
    if (fchmod(descriptor, status.st_mode & 07777) != 0) errno = 0;
}

// Copies every piece that does not set the key. True when all was read and written; `complete_line`
// tells whether what was written ends with a line end.
bool copy_other_settings(int source, const char* key, FILE* target, bool& complete_line) {
    LineReader reader(source, kWriterPiece);
    bool possible = is_possible_key(key);
    bool dropped = false;
    for (std::string_view piece; !(piece = next_piece(reader)).empty();) {
        std::string_view value;
        if (possible && sets_key(piece, key, value)) {
            dropped = true;
            continue;
        }
        // The rest of a long line whose middle was dropped starts a line of its own.
        if (dropped && !complete_line) fputc('\n', target);
        dropped = false;
        trace(kTrace, "write : %.*s", static_cast<int>(piece.size()), piece.data());
        if (fwrite(piece.data(), 1, piece.size(), target) == 0) return false;
        complete_line = piece.ends_with('\n');
    }
    return !reader.failed;
}

bool flush_to_disk(FILE* file) {
    if (fflush(file) != 0 || ferror(file) != 0) return false;
    // EINVAL: a file system that knows no fsync has nothing to wait for.
    return fsync(fileno(file)) == 0 || errno == EINVAL;
}

bool write_new_content(const char* path, const char* key, const char* value, int mode, FILE* target) {
    Descriptor source;
    struct stat status;
    if (!open_source(path, source, status)) return false;
    bool complete_line = true;
    if (source) {
        keep_mode_and_owner(fileno(target), status);
        if (!copy_other_settings(source.number, key, target, complete_line)) return false;
    }
    if (mode != kDelete) {
        // A file without a last line end must not have its last setting joined to the new one.
        if (!complete_line) fputc('\n', target);
        fprintf(target, "%s=%s\n", key, value);
    }
    return flush_to_disk(target);
}

}  // namespace

int set_StringbyKeyExtend(const char* path, const char* key, const char* value, int mode) {
    if (path == nullptr || key == nullptr || (value == nullptr && mode != kDelete)) return -1;
    Text<kWriterText> temporary("%s_tmp", path);
    Text<kWriterText> command("mv %s %s", temporary.c_str(), path);
    if (command.cut) return -1;

    Descriptor locked = open_temporary(temporary.c_str());
    File target(locked ? fdopen(locked.number, "w") : nullptr);
    if (!target) {
        report_open_failure(__func__, temporary.c_str());
        if (locked) (void)unlink(temporary.c_str());
        return -1;
    }
    (void)locked.release();
    if (!write_new_content(path, key, value, mode, target.get())) {
        printf("%s : %s\n", __func__, strerror(errno));
        (void)unlink(temporary.c_str());
        return -1;
    }
    (void)run_command(command);
    return 0;
}

int set_StringbyKey(const char* path, const char* key, const char* value) {
    return set_StringbyKeyExtend(path, key, value, 1);
}

int del_StringbyKey(const char* path, const char* key, const char* value) {
    return set_StringbyKeyExtend(path, key, value, kDelete);
}
