// Where the names of this machine's disks come from: the tables in force with the lines that their rows stand on, or
// the rules.
#pragma once

#include <stddef.h>

#include "disk/slot_lines.h"
#include "disk/wiring.h"
#include "foundation/text.h"

/// A line of a slot file that is no comment and not empty, as the reader took it.
struct SlotLine {
    int number;       // in the file, from 1
    const char* key;  // without blanks; null for a line without "="
    const char* value;
    bool section;  // the header of a card's section, which has no key
    quorvel::SlotFault fault;
    int rows;  // read so far, this line's included
};

/// One of the two slot files as the library reads it, but to its end: a bad line does not stop it.
struct SlotFile {
    const char* path;
    bool extension;  // /etc/extslot.conf
};
inline constexpr SlotFile kDiskOrderFile = {"/etc/diskpath.conf", false};
inline constexpr SlotFile kExtensionFile = {"/etc/extslot.conf", true};

/// What is done with a line; `context` is the caller's.
using SlotLineVisitor = void (*)(void* context, const SlotLine& line, const struct disk_path* rows);

/// Walks a file. False when it cannot be opened. `table` gets what the library's reader would give, which prints
/// nothing here whatever the file says of a dump; released with disk_path_free.
[[nodiscard]] bool walk_slot_file(const SlotFile& file, SlotLineVisitor visit, void* context,
                                  struct disk_path** table = nullptr);

/// A table in force.
struct NamedTable {
    const struct disk_path* rows = nullptr;  // null without one
    const SlotFile* file = nullptr;          // null for a built-in one
    quorvel::Heap<int> lines;                // the line of each row of a file

    /// The line that a row stands on, or 0.
    [[nodiscard]] int line_of(int row) const { return lines ? lines.get()[row] : 0; }
};

struct NamingSource {
    NamedTable table, extension;
    struct disk_path* owned[2] = {};
    quorvel::Wiring wiring;
    bool new_sysfs = false;
    quorvel::Text<32> kernel;
    quorvel::Text<384> origin;  // of the table in force, or of the rules

    NamingSource();
    ~NamingSource();
    NamingSource(const NamingSource&) = delete;
    NamingSource& operator=(const NamingSource&) = delete;
};

/// The first bad line of a file: what is wrong with it and its number, or 0.
[[nodiscard]] int first_bad_line(const SlotFile& file, quorvel::SlotFault& fault);

/// What a fault means, for people.
[[nodiscard]] const char* text_of_fault(quorvel::SlotFault fault);
