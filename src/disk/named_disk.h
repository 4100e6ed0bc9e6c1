// A disk's logical name in its parts, as a row of a slot table or the wiring rules give it.
#pragma once

#include <optional>

#include "disk/slot_match.h"

namespace quorvel {

/// The texts are the row's, or constant.
struct NamedDisk {
    int32_t kind = DISK_PATH_INTERNAL;
    const char* word = nullptr;  // which the number follows
    int number = 0;
    const char* address = nullptr;  // the SCSI address that the row states, or null
};

[[nodiscard]] inline NamedDisk named_by_row(const struct disk_path& row) {
    return {row.type, word_of_row(row), row.slot, row.scsi_id};
}

/// The disk's name by a table, which may be null. A row that is undecided is looked at as find_row does.
template <typename LookAgain>
[[nodiscard]] std::optional<NamedDisk> named_by_table(const struct disk_path* set, const DiskPlace& disk,
                                                      LookAgain&& look_again) {
    if (set == nullptr) return {};
    const struct disk_path& row = set[find_row(set, disk, look_again)];
    if (row.type == DISK_PATH_END) return {};
    return named_by_row(row);
}

}  // namespace quorvel
