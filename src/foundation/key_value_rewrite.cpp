// Rewriting a key=value file: everything but one key goes to a temporary file beside it, which then takes its place.
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include <optional>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/line_reader.h"
#include "foundation/replacement.h"
#include "foundation/shell.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr size_t kWriterText = 256;  // the temporary name, and the command that moves it into place
constexpr int kDelete = 2;

// The file as it is; closed when it does not exist.
struct Source {
    Descriptor file;
    struct stat status;
};

// Only a file that does not exist counts as empty; none, and errno, for one that cannot be read.
[[nodiscard]] std::optional<Source> open_source(const char* path) {
    Source source = {open_for_reading(path), {}};
    if (!source.file && errno != ENOENT) return {};
    if (!source.file) return source;
    if (fstat(source.file.number, &source.status) != 0) return {};
    if (S_ISREG(source.status.st_mode)) return source;
    errno = S_ISDIR(source.status.st_mode) ? EISDIR : EINVAL;
    return {};
}

// Collects the new content and writes it block by block.
struct Target {
    // cppcheck-suppress uninitMemberVar
    explicit Target(int open_descriptor) : descriptor(open_descriptor) {}
    // Settings may be secrets.
    ~Target() { explicit_bzero(block, sizeof block); }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    int descriptor;  // borrowed
    bool failed = false;
    bool complete_line = true;  // what was added so far ends with a line end
    size_t used = 0;
    char block[16384];
};

void write_block(Target& target) {
    if (!write_fully(target.descriptor, target.block, target.used)) target.failed = true;
    target.used = 0;
}

void add(Target& target, std::string_view text) {
    while (text.size() > sizeof target.block - target.used) {
        size_t room = sizeof target.block - target.used;
        memcpy(target.block + target.used, text.data(), room);
        target.used += room;
        write_block(target);
        text.remove_prefix(room);
    }
    memcpy(target.block + target.used, text.data(), text.size());
    target.used += text.size();
    if (!text.empty()) target.complete_line = text.back() == '\n';
}

// Copies every piece that does not set the key. True when all was read and written.
[[nodiscard]] bool copy_other_settings(int source, std::string_view key, Target& target) {
    LineReader reader(source, kWriterPiece);
    bool possible = is_possible_key(key);
    bool dropped = false;  // a whole line, or the end of one
    for (std::string_view piece; !(piece = next_piece(reader)).empty();) {
        if (possible && value_of_key(piece, key)) {
            dropped |= piece.ends_with('\n');
            continue;
        }
        // What preceded a dropped end of a long line becomes a line of its own.
        if (dropped && !target.complete_line) add(target, "\n");
        dropped = false;
        if (tracing(kTrace)) trace(kTrace, "write : %.*s", static_cast<int>(piece.size()), piece.data());
        add(target, piece);
        if (target.failed) return false;
    }
    if (dropped && !target.complete_line) add(target, "\n");
    return !reader.failed;
}

[[nodiscard]] bool is_on_disk(int descriptor) {
    // EINVAL: a file system that knows no fsync has nothing to wait for.
    return fsync(descriptor) == 0 || errno == EINVAL;
}

[[nodiscard]] bool write_new_content(const char* path, const char* key, const char* value, int mode, int descriptor) {
    Target target(descriptor);
    std::optional<Source> source = open_source(path);
    if (!source) return false;
    if (source->file && !copy_other_settings(source->file.number, key, target)) return false;
    if (mode != kDelete) {
        // A file without a last line end must not have its last setting joined to the new one.
        if (!target.complete_line) add(target, "\n");
        for (std::string_view part :
             {std::string_view(key), std::string_view("="), std::string_view(value), std::string_view("\n")})
            add(target, part);
    }
    write_block(target);
    if (target.failed) return false;
    // Nobody else may read it before it is whole.
    give_mode_and_owner(descriptor, source->file ? &source->status : nullptr);
    return is_on_disk(descriptor);
}

// mv puts the file into a directory that has the path meanwhile, also behind a link: whoever may write where the path
// is would choose where a file of his content and mode appears. There it is empty, and nobody's but the caller's.
void disarm_elsewhere(const char* path, int descriptor) {
    struct stat moved;
    struct stat named;
    if (fstat(descriptor, &moved) != 0 || moved.st_nlink == 0) return;
    // What cannot be looked at is most likely the settings themselves.
    if (lstat(path, &named) != 0 ? errno != ENOENT && errno != ENOTDIR : is_same_file(moved, named)) return;
    if (fchmod(descriptor, 0600) != 0 || ftruncate(descriptor, 0) != 0 || fchown(descriptor, geteuid(), getegid()) != 0)
        errno = 0;
}

// What mv could not move into place holds the same secrets.
void move_into_place(const Text<kWriterText>& command, const char* temporary, const char* path, int descriptor) {
    if (run_command(command) != 0) (void)unlink(temporary);
    disarm_elsewhere(path, descriptor);
}

}  // namespace

int set_StringbyKeyExtend(const char* path, const char* key, const char* value, int mode) {
    if (path == nullptr || key == nullptr || (value == nullptr && mode != kDelete)) return fail(EINVAL);
    Text<kWriterText> temporary("%s_tmp", path);
    Text<kWriterText> command("%s %s %s", files::kMoveTool, ShellWord(temporary.c_str()).c_str(),
                              ShellWord(path).c_str());
    if (command.cut) return fail(ENAMETOOLONG);

    HeldSignals held;
    Descriptor locked = open_replacement(temporary, path);
    if (!locked) {
        report_open_failure(__func__, temporary.c_str());
        return -1;
    }
    if (!write_new_content(path, key, value, mode, locked.number)) {
        const int error = errno;
        printf("%s : %s\n", __func__, strerror(error));
        (void)unlink(temporary.c_str());
        return fail(error);
    }
    move_into_place(command, temporary.c_str(), path, locked.number);
    return 0;
}

int set_StringbyKey(const char* path, const char* key, const char* value) {
    return set_StringbyKeyExtend(path, key, value, 1);
}

int del_StringbyKey(const char* path, const char* key, const char* value) {
    return set_StringbyKeyExtend(path, key, value, kDelete);
}
