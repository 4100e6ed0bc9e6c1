// The rows of the slot files: against each other, and against the disks of the machine.
#include <string.h>

#include "boards/block_disks.h"
#include "boards/findings.h"
#include "boards/naming_source.h"
#include "boards/reasons.h"
#include "foundation/files.h"

using namespace quorvel;

bool is_undecidable(const struct disk_path& row) {
    return row.type == DISK_PATH_USB && row.path != nullptr &&
           (starts_with(row.path, "usb") || contains(row.path, "/usb"));
}

namespace {

struct PlacedRow {
    const struct disk_path& row;
    const char* file;  // null for a built-in table
    int line;
};

PlacedRow placed(const NamedTable& table, int index) {
    return {table.rows[index], table.file != nullptr ? table.file->path : nullptr, table.line_of(index)};
}

Text<160> place_of(const PlacedRow& row) {
    return row.file != nullptr ? Text<160>("%s:%d", row.file, row.line) : Text<160>("the built-in table");
}

// Whether the earlier of two rows takes every disk that the later one describes.
bool shadows(const struct disk_path& earlier, const struct disk_path& later) {
    if (earlier.path == nullptr || later.path == nullptr || !contains(later.path, earlier.path)) return false;
    if (earlier.type == DISK_PATH_BOOT) return true;
    if (earlier.type != later.type) return false;
    if (earlier.type != DISK_PATH_USB) return true;
    return earlier.usb_port1 == later.usb_port1 && (earlier.usb_port2 == -1 || earlier.usb_port2 == later.usb_port2);
}

bool is_same_name(const struct disk_path& one, const struct disk_path& other) {
    return one.type == other.type && strcmp(name_of_row(one).c_str(), name_of_row(other).c_str()) == 0;
}

void compare(Findings& findings, const PlacedRow& earlier, const PlacedRow& later) {
    Text<160> place = place_of(earlier);
    bool same_name = is_same_name(earlier.row, later.row);
    if (shadows(earlier.row, later.row)) {
        find(findings, same_name ? Severity::kWarning : Severity::kError, later.file, later.line,
             "never reached: %s takes the disks of this place as %s; remove one, or make its path longer",
             place.c_str(), name_of_row(earlier.row).c_str());
    } else if (same_name) {
        find(findings, Severity::kWarning, later.file, later.line,
             "%s has a place in %s already; correct the slot unless it has two", name_of_row(later.row).c_str(),
             place.c_str());
    }
}

void compare_with(Findings& findings, const NamedTable& earlier, int limit, const PlacedRow& later) {
    for (int i = 0; i < limit; i++)
        compare(findings, placed(earlier, i), later);
}

// A built-in table is as it is.
void compare_rows(Findings& findings, const NamingSource& source) {
    const NamedTable& table = source.table;
    int count = table.rows != nullptr ? index_of_end(table.rows) : 0;
    for (int i = 0; i < count && table.file != nullptr; i++)
        compare_with(findings, table, i, placed(table, i));
    for (int i = 0; source.extension.rows != nullptr && i < index_of_end(source.extension.rows); i++) {
        PlacedRow row = placed(source.extension, i);
        compare_with(findings, table, count, row);
        compare_with(findings, source.extension, i, row);
    }
}

struct DiskCheck {
    Findings& findings;
    const NamingSource& source;
    PlacedRow row;
    Text<64> first;  // the first disk that the row describes
    bool told = false;
};

void check_disk(void* context, const char* name) {
    DiskCheck& check = *static_cast<DiskCheck*>(context);
    BlockDisk disk;
    if (check.told || !find_block_disk(name, check.source.new_sysfs, disk)) return;
    Fit fit = fit_of_row(check.row.row, disk.place());
    if (fit == Fit::kUndecided && !contains(check.row.row.path, "usb")) {
        Reason reason = reason_of(fit, check.row.row, disk.place());
        find(check.findings, Severity::kError, check.row.file, check.row.line, "never decided for %s: %s", name,
             reason.c_str());
        check.told = true;
    }
    if (fit != Fit::kYes) return;
    if (check.first.length > 0) {
        find(check.findings, Severity::kError, check.row.file, check.row.line,
             "both %s and %s are at this place; make the path longer", check.first.c_str(), name);
        check.told = true;
    }
    if (check.first.length == 0) check.first.add(name);
}

void check_disks(Findings& findings, const NamingSource& source, const NamedTable& table) {
    for (int i = 0; table.file != nullptr && i < index_of_end(table.rows); i++) {
        DiskCheck check = {findings, source, placed(table, i), {}};
        (void)for_each_disk(check_disk, &check);  // without a list there is no disk to compare with
    }
}

// A built-in table can be replaced, if not corrected.
void check_built_in(Findings& findings, const NamingSource& source) {
    for (int i = 0; source.table.file == nullptr && source.table.rows != nullptr && i < index_of_end(source.table.rows);
         i++) {
        if (is_undecidable(source.table.rows[i])) {
            find(findings, Severity::kWarning, kDiskOrderFile.path, 1,
                 "%s of the built-in table can never be decided, and programs wait for ever; write this file",
                 name_of_row(source.table.rows[i]).c_str());
        }
    }
}

void check_use(Findings& findings, const NamingSource& source) {
    if (source.table.rows == nullptr && path_exists(kExtensionFile.path)) {
        find(findings, Severity::kWarning, kExtensionFile.path, 1,
             "nobody reads this file where names follow rules; write /etc/diskpath.conf");
    }
}

}  // namespace

void check_rows(Findings& findings) {
    NamingSource source;
    compare_rows(findings, source);
    check_disks(findings, source, source.table);
    check_disks(findings, source, source.extension);
    check_built_in(findings, source);
    check_use(findings, source);
}
