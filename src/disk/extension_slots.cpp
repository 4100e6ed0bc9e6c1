// /etc/extslot.conf: the slots of a PCI extension card, with a section for each card it may be.
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "disk/slot_file.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/handles.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "quorvel/naming.h"

using namespace quorvel;

namespace {

constexpr char kRowWord[] = "extslot";
constexpr int kSlots = 4;

// A card as the PCI list and the section headers of the file tell it.
struct Card {
    unsigned vendor = UINT32_MAX;
    unsigned device = UINT32_MAX;
    bool seen = false;
};

struct KnownCard {
    std::string_view id;  // vendor and device as the PCI list shows them
    unsigned vendor, device;
};

constexpr KnownCard kKnownCards[] = {
    {"19120014", 0x1912, 0x0014},
    {"19120015", 0x1912, 0x0015},
    {"10330194", 0x1033, 0x0194},
};

// One read of the file.
struct ExtensionFile {
    Card card, section;
    bool dump = false;
    DiskWord sata_words[kSlots] = {};
    DiskWord usb_words[kSlots] = {};
    SlotTableBuilder table;
    Heap<uint8_t> extension_slots;  // one for each row of the table
};

// The last known card of the PCI list.
Card find_card() {
    constexpr size_t kPiece = 59;
    constexpr size_t kIdPlace = 5;
    Card card;
    Descriptor list = open_for_reading(files::kPciDevices);
    if (!list) return card;
    LineReader reader(list.number, kPiece);
    for (std::string_view piece; !(piece = next_piece(reader)).empty();) {
        piece.remove_prefix(std::min(piece.size(), kIdPlace));
        for (const KnownCard& known : kKnownCards) {
            if (piece.starts_with(known.id)) card = {known.vendor, known.device, true};
        }
    }
    return card;
}

bool take_section(ExtensionFile& file, const char* line) {
    Card section = {0, 0, true};
    if (sscanf(line, "[%4x:%4x]", &section.vendor, &section.device) != 2) return false;
    file.section = section;
    return true;
}

bool is_row_of_other_card(const ExtensionFile& file) {
    return file.section.seen && file.card.seen &&
           (file.section.vendor != file.card.vendor || file.section.device != file.card.device);
}

// The extension slot of a row's key, or 0.
int extension_slot_of(const char* key) {
    if (!starts_with(key, kRowWord)) return 0;
    int slot = leading_int(key + strlen(kRowWord));
    return slot >= 1 && slot <= kSlots ? slot : 0;
}

struct disk_path* add_row(ExtensionFile& file, int extension_slot) {
    size_t count = static_cast<size_t>(file.table.count) + 1;
    uint8_t* grown = static_cast<uint8_t*>(realloc(file.extension_slots.get(), count));
    if (grown == nullptr) return nullptr;
    (void)file.extension_slots.release();
    file.extension_slots.reset(grown);
    grown[count - 1] = static_cast<uint8_t>(extension_slot);
    return file.table.add();
}

bool take_row(ExtensionFile& file, const char* key, const char* value) {
    int extension_slot = extension_slot_of(key);
    if (extension_slot == 0) return false;
    struct disk_path* row = add_row(file, extension_slot);
    if (row == nullptr) return false;

    SlotFields fields(value);
    const char* kind = fields.text[0];
    SlotTexts texts = {fields.text[1], fields.text[2], fields.text[3], fields.text[4]};
    if (strcmp(kind, "USB") == 0) return fill_row(*row, DISK_PATH_USB, texts, file.usb_words[extension_slot - 1]);
    if (strcmp(kind, "SATA") == 0 || strcmp(kind, "SCSI") == 0)
        return fill_row(*row, DISK_PATH_INTERNAL, texts, file.sata_words[extension_slot - 1]);
    return fill_unknown_row(*row, texts);
}

void take_words(ExtensionFile& file, const char* key, const char* value) {
    for (int i = 0; i < kSlots; i++) {
        if (strcmp(key, Text<32>("EXTSLOT%d_SATADISKNAME", i + 1).c_str()) == 0) take_word(file.sata_words[i], value);
        if (strcmp(key, Text<32>("EXTSLOT%d_USBDISKNAME", i + 1).c_str()) == 0) take_word(file.usb_words[i], value);
    }
}

// False for a bad row.
bool take_setting(ExtensionFile& file, const char* key, const char* value) {
    if (contains(key, kRowWord)) return is_row_of_other_card(file) || take_row(file, key, value);
    if (starts_with(key, "EXTSLOT")) take_words(file, key, value);
    if (strcmp(key, "dump_config") == 0 && strcmp(value, "yes") == 0) file.dump = true;
    return true;
}

// The USB line's misplaced tab and missing comma are part of the interface.
void dump_row(const struct disk_path& row, int extension_slot) {
    const char* path = row.path != nullptr ? row.path : "";
    const char* address = row.scsi_id != nullptr ? row.scsi_id : "";
    if (row.type == DISK_PATH_INTERNAL)
        printf("%s%d=SATA,\t%d,\t%s,\t%s\n", kRowWord, extension_slot, row.slot, path, address);
    if (row.type == DISK_PATH_USB)
        printf("%s%d=USB,\t%d,\t%s\t,%d\t%d\n", kRowWord, extension_slot, row.slot, path, row.usb_port1, row.usb_port2);
}

void dump_file(const ExtensionFile& file) {
    printf(";%s\n", files::kExtensionSlots);
    for (int i = 0; i < kSlots; i++) {
        if (file.sata_words[i][0] != '\0') printf("EXTSLOT%d_SATADISKNAME=%s\n", i + 1, file.sata_words[i]);
        if (file.usb_words[i][0] != '\0') printf("EXTSLOT%d_USBDISKNAME=%s\n", i + 1, file.usb_words[i]);
    }
    puts(";");
    for (int i = 0; i < file.table.count; i++)
        dump_row(file.table.rows[i], file.extension_slots.get()[i]);
}

}  // namespace

struct disk_path* get_ExtSlotConfig(void) {
    Descriptor opened = open_for_reading(files::kExtensionSlots);
    if (!opened) return nullptr;
    ExtensionFile file;
    file.card = find_card();
    LineReader reader(opened.number, kSlotFilePiece);
    char line[kSlotFilePiece + 1];
    while (next_line(reader, line, sizeof line)) {
        char *key, *value;
        if (take_section(file, line) || !split_setting(line, key, value)) continue;
        if (take_setting(file, key, value)) continue;
        if (file.dump) printf("%s parse error LINE=%s=%s\n", files::kExtensionSlots, key, value);
        return nullptr;
    }
    if (file.dump && file.table.count > 0) dump_file(file);
    return file.table.release();
}
