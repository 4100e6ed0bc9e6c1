// The settings of a backup task, from its key=value file.
#pragma once

#include <stddef.h>

#include <optional>

#include "foundation/handles.h"

namespace quorvel {

/// Room for a line of a task file, and so for anything in one.
inline constexpr size_t kTaskLine = 1024;

inline constexpr int kOn = 1;

/// A task record. -1 stands for a setting that is missing or that no table knows.
struct BackupTask {
    int number = -1;
    int status = -1;
    int type = -1;
    int hour = -1;
    int minute = -1;
    int week_day = -1;
    int overwrite = -1;
    int crypt = -1;
    int compress = -1;
    Heap<char> folder;  // the pair list; null when missing
    int trashbox = -1;
    int mirror = -1;
    int logfile = -1;
    int force = -1;
    Heap<char> name;  // null when missing
    int hardlink = -1;
    int keep_generation = -1;
};

/// Prints a task's settings, a line each.
void print_task(const BackupTask& task);

/// A text of the record, empty when it is missing.
[[nodiscard]] inline const char* text_or_empty(const Heap<char>& text) {
    return text ? text.get() : "";
}

/// The two entries of a pair.
struct BackupPair {
    char source[kTaskLine] = "";
    char destination[kTaskLine] = "";
};

/// A task's n-th pair, counted from 1; none when it is not complete, or when an entry is one that rsync could take for
/// something else (which is told on standard error).
[[nodiscard]] std::optional<BackupPair> find_pair(const BackupTask& task, int number);

/// Whether a text can be part of an rsync command line that a script splits at blanks: no control byte, no component
/// "..", no word that begins with "-". One that cannot is told on standard error.
[[nodiscard]] bool is_safe_for_rsync(const char* text);

}  // namespace quorvel

extern "C" {

/// Reads the file of a task into a fresh record; a missing file leaves it as it is. 0, or -1 and a line of its own when
/// the number is not all digits.
[[nodiscard]] int LibQuorvelBin_LoadTaskInfo(const char* number, quorvel::BackupTask* task);
}
