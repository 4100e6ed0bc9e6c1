// The list of settings that "config apply" works through.
//
//     # a comment; empty lines count as little
//     HOSTNAME.info.tevra.etc=nas         the entry gets the value, which is all that stands behind the first "="
//     /etc/tevra/info/WORKGROUP=OFFICE    the same, in the other notation
//     -COMMENT.info.tevra.etc             the entry is removed: a line that begins with "-" and has no "="
#pragma once

#include <stddef.h>
#include <sys/types.h>

#include "foundation/handles.h"
#include "settings.h"

/// One line of the list, and what its entry holds before anything is written.
struct Change {
    size_t line;
    const char* key;    // in the list's text, terminated
    const char* value;  // likewise; null to remove the entry
    Place place;
    dev_t device;  // of the file, which can have several paths
    ino_t inode;
    bool present;
    char former[kSettingText];

    [[nodiscard]] const char* old_value() const { return present ? former : nullptr; }
};

struct SettingsList {
    quorvel::Heap<char> text;
    size_t length = 0;
    quorvel::Heap<Change> changes;
    size_t count = 0;

    [[nodiscard]] Change* begin() const { return changes.get(); }
    [[nodiscard]] Change* end() const { return changes.get() + count; }
};

/// Reads a list to its end: a regular file, which nobody has to be waited for, or standard input, which is "-". Null,
/// or why it cannot be read.
[[nodiscard]] const char* read_list(const char* path, SettingsList& list);

/// Takes the text apart and looks at every entry. Tells each line at fault on standard error and gives their number,
/// or -1 without memory.
[[nodiscard]] int check_list(SettingsList& list, bool may_add);
