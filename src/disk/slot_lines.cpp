#include "disk/slot_lines.h"

#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "foundation/numbers.h"
#include "foundation/text.h"
#include "platform/pci_devices.h"

namespace quorvel {

namespace {

// ---- /etc/diskpath.conf ----

struct RowKey {
    const char* key;
    int32_t type;
};

constexpr RowKey kRowKeys[] = {
    {"HDD_INTERNAL", DISK_PATH_INTERNAL},
    {"HDD_USB",      DISK_PATH_USB     },
    {"HDD_BOOT",     DISK_PATH_BOOT    },
};

const char* word_for(int32_t type, const DiskOrder& order) {
    if (type == DISK_PATH_INTERNAL) return order.internal_word;
    return type == DISK_PATH_USB ? order.usb_word : "";
}

// ---- /etc/extslot.conf ----

struct KnownCard {
    std::string_view id;  // vendor and device as the PCI list shows them
    unsigned vendor, device;
};

constexpr KnownCard kKnownCards[] = {
    {"19120014", 0x1912, 0x0014},
    {"19120015", 0x1912, 0x0015},
    {"10330194", 0x1033, 0x0194},
};

bool is_row_of_other_card(const ExtensionFile& file) {
    return file.section.seen && file.card.seen &&
           (file.section.vendor != file.card.vendor || file.section.device != file.card.device);
}

// The extension slot of a row's key, or 0.
int extension_slot_of(const char* key) {
    if (!starts_with(key, kExtensionRow)) return 0;
    int slot = leading_int(key + strlen(kExtensionRow));
    return slot >= 1 && slot <= kExtensionSlotCount ? slot : 0;
}

[[nodiscard]] struct disk_path* add_row(ExtensionFile& file, int extension_slot) {
    size_t count = static_cast<size_t>(file.table.count) + 1;
    uint8_t* grown = static_cast<uint8_t*>(realloc(file.extension_slots.get(), count));
    if (grown == nullptr) return nullptr;
    (void)file.extension_slots.release();
    file.extension_slots.reset(grown);
    grown[count - 1] = static_cast<uint8_t>(extension_slot);
    return file.table.add();
}

[[nodiscard]] SlotFault take_row(ExtensionFile& file, const char* key, const char* value) {
    int extension_slot = extension_slot_of(key);
    if (extension_slot == 0) return SlotFault::kExtensionSlot;
    struct disk_path* row = add_row(file, extension_slot);
    if (row == nullptr) return SlotFault::kMemory;

    SlotFields fields(value);
    const char* kind = fields.text[0];
    SlotTexts texts = {fields.text[1], fields.text[2], fields.text[3], fields.text[4]};
    if (strcmp(kind, "USB") == 0) return fill_row(*row, DISK_PATH_USB, texts, file.usb_words[extension_slot - 1]);
    if (strcmp(kind, "SATA") == 0 || strcmp(kind, "SCSI") == 0)
        return fill_row(*row, DISK_PATH_INTERNAL, texts, file.sata_words[extension_slot - 1]);
    return fill_unknown_row(*row, texts);
}

void take_words(ExtensionFile& file, const char* key, const char* value) {
    for (int i = 0; i < kExtensionSlotCount; i++) {
        if (strcmp(key, Text<32>("EXTSLOT%d_SATADISKNAME", i + 1).c_str()) == 0) take_word(file.sata_words[i], value);
        if (strcmp(key, Text<32>("EXTSLOT%d_USBDISKNAME", i + 1).c_str()) == 0) take_word(file.usb_words[i], value);
    }
}

}  // namespace

SlotFault take_disk_order_setting(DiskOrder& order, const char* key, const char* value) {
    if (strcmp(key, "HDD_DISKNAME") == 0) take_word(order.internal_word, value);
    if (strcmp(key, "USB_DISKNAME") == 0) take_word(order.usb_word, value);
    for (const RowKey& row_key : kRowKeys) {
        if (strcmp(key, row_key.key) != 0) continue;
        struct disk_path* row = order.table.add();
        if (row == nullptr) return SlotFault::kMemory;
        SlotFields fields(value);
        SlotTexts texts = {fields.text[0], fields.text[1], fields.text[2], fields.text[3]};
        return fill_row(*row, row_key.type, texts, word_for(row_key.type, order));
    }
    return SlotFault::kNone;
}

Card find_card() {
    constexpr size_t kPiece = 59;
    static constexpr size_t kIdPlace = 5;
    Card card;
    walk_pci_list(kPiece, [&card](std::string_view piece) {
        piece.remove_prefix(std::min(piece.size(), kIdPlace));
        for (const KnownCard& known : kKnownCards) {
            if (piece.starts_with(known.id)) card = {known.vendor, known.device, true};
        }
        return false;  // the last one counts
    });
    return card;
}

bool take_section(ExtensionFile& file, const char* line) {
    std::optional<HexadecimalPair> ids = scanned_pair(line);
    if (!ids) return false;
    file.section = {ids->first, ids->second, true};
    return true;
}

SlotFault take_extension_setting(ExtensionFile& file, const char* key, const char* value) {
    if (contains(key, kExtensionRow)) return is_row_of_other_card(file) ? SlotFault::kNone : take_row(file, key, value);
    if (starts_with(key, "EXTSLOT")) take_words(file, key, value);
    if (strcmp(key, "dump_config") == 0 && strcmp(value, "yes") == 0) file.dump = true;
    return SlotFault::kNone;
}

}  // namespace quorvel
