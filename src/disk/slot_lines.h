// The settings of the two slot files, one at a time: the reader that gives up at the first bad line and the check that
// tells of all of them take every line the same way.
#pragma once

#include <stdint.h>

#include "disk/slot_file.h"
#include "foundation/handles.h"

namespace quorvel {

/// What was read of /etc/diskpath.conf so far. A word holds for the rows below it.
struct DiskOrder {
    SlotTableBuilder table;
    DiskWord internal_word = "";
    DiskWord usb_word = "";
};

[[nodiscard]] SlotFault take_disk_order_setting(DiskOrder& order, const char* key, const char* value);

inline constexpr char kExtensionRow[] = "extslot";
inline constexpr int kExtensionSlotCount = 4;

/// A card as the PCI list and the section headers of the file tell it.
struct Card {
    unsigned vendor = UINT32_MAX;
    unsigned device = UINT32_MAX;
    bool seen = false;
};

/// The last known card of the PCI list.
[[nodiscard]] Card find_card();

/// What was read of /etc/extslot.conf so far.
struct ExtensionFile {
    Card card, section;
    bool dump = false;
    DiskWord sata_words[kExtensionSlotCount] = {};
    DiskWord usb_words[kExtensionSlotCount] = {};
    SlotTableBuilder table;
    Heap<uint8_t> extension_slots;  // one for each row of the table
};

/// Whether a line is a section header, which is then taken.
[[nodiscard]] bool take_section(ExtensionFile& file, const char* line);

[[nodiscard]] SlotFault take_extension_setting(ExtensionFile& file, const char* key, const char* value);

}  // namespace quorvel
