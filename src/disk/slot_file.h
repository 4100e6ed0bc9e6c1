// What the two slot files, /etc/diskpath.conf and /etc/extslot.conf, have in common: lines of KEY=VALUE, values that
// are lists of fields, and the growing table they are read into.
#pragma once

#include <stddef.h>

#include <optional>

#include "quorvel/naming.h"

namespace quorvel {

/// Longest piece of a line of a slot file, in characters.
inline constexpr size_t kSlotFilePiece = 511;
/// Room for a configured word in place of "disk" or "usbdisk".
using DiskWord = char[80];

/// A setting of a slot file: the key ends at its first blank, the value in front of the line end.
struct SlotSetting {
    char* key;
    char* value;
};

/// Splits a line at its first "=", in place. None in comments (";" and "#") and lines without "=".
[[nodiscard]] std::optional<SlotSetting> split_setting(char* line);

/// Keeps the first word of a value, cut to its room; a value without one leaves the last one.
void take_word(DiskWord& word, const char* value);

/// The first word of each field of a comma-separated value; empty where there is none, and for fields of more than 127
/// characters. Empty fields do not count.
struct SlotFields {
    static constexpr int kCount = 5;
    char text[kCount][128];

    explicit SlotFields(const char* value);
};

/// A table that is being read. It is complete, with END, at any time.
struct SlotTableBuilder {
    struct disk_path* rows = nullptr;
    int count = 0;

    SlotTableBuilder() = default;
    ~SlotTableBuilder() { disk_path_free(rows); }
    SlotTableBuilder(const SlotTableBuilder&) = delete;
    SlotTableBuilder& operator=(const SlotTableBuilder&) = delete;

    /// A new zeroed row in front of END, or null when memory is short.
    [[nodiscard]] struct disk_path* add();
    /// Hands the table over: null, and ENODATA, when nothing was added.
    [[nodiscard]] struct disk_path* release();
};

/// What a line says about a row: `third` and `fourth` are address or ports, as the kind has them.
struct SlotTexts {
    const char *slot, *path, *third, *fourth;
};

/// What makes a line a bad one. A reader that meets one gives the whole table up.
enum class SlotFault { kNone, kSlot, kPath, kAddress, kPort, kExtensionSlot, kMemory };

/// The reason as errno has it.
[[nodiscard]] int reason_of(SlotFault fault);

/// Fills a row of a kind. An empty word is none.
[[nodiscard]] SlotFault fill_row(struct disk_path& row, int32_t type, const SlotTexts& texts, const char* word);

/// Fills slot and, unless it is empty, path of a row of no known kind.
[[nodiscard]] SlotFault fill_unknown_row(struct disk_path& row, const SlotTexts& texts);

}  // namespace quorvel
