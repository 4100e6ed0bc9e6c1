// The new content of a file, written under another name beside it until it is whole. Writers of one file share that
// name, so each holds a lock on what it writes.
#pragma once

#include <sys/stat.h>

#include <string_view>

#include "foundation/handles.h"
#include "foundation/text.h"

namespace quorvel {

/// An empty file of that name, locked, that nobody but the caller can read. One that is there already and that another
/// writer holds is waited for, ten seconds at most; anything else of that name (left over, a link, somebody else's) is
/// removed and never written; what others may read counts as left over after ten minutes, whoever has locked it. None,
/// and errno, when that cannot be done. A writer that gives its file to the owner of the one that it is to replace
/// names that one, so that the next writer waits for it then, too.
[[nodiscard]] Descriptor open_replacement(WholeText path, const char* replaced = nullptr);

/// Whether two looks saw one file.
[[nodiscard]] inline bool is_same_file(const struct stat& one, const struct stat& other) {
    return one.st_ino == other.st_ino && one.st_dev == other.st_dev;
}

/// Gives a whole replacement the mode and owner of the file whose place it takes; where there is none, the mode of a
/// new file: as the caller's mask allows, and never wider than 0644.
void give_mode_and_owner(int descriptor, const struct stat* replaced);

/// Puts a content in a file's place: the old one is there until the new one is whole and on disk. False, the file
/// untouched, and errno, when that failed.
[[nodiscard]] bool replace_file(WholeText path, std::string_view content);

}  // namespace quorvel
