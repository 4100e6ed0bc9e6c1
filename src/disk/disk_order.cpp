// /etc/diskpath.conf: a whole slot table for this machine.
#include <string.h>

#include "disk/slot_file.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "quorvel/naming.h"

using namespace quorvel;

namespace {

// What lines read so far leave for the lines below them.
struct DiskWords {
    DiskWord internal = "";
    DiskWord usb = "";
};

struct RowKey {
    const char* key;
    int32_t type;
};

constexpr RowKey kRowKeys[] = {
    {"HDD_INTERNAL", DISK_PATH_INTERNAL},
    {"HDD_USB",      DISK_PATH_USB     },
    {"HDD_BOOT",     DISK_PATH_BOOT    },
};

const char* word_for(int32_t type, const DiskWords& words) {
    if (type == DISK_PATH_INTERNAL) return words.internal;
    return type == DISK_PATH_USB ? words.usb : "";
}

// False for a bad row.
bool take_setting(SlotTableBuilder& table, DiskWords& words, const char* key, const char* value) {
    if (strcmp(key, "HDD_DISKNAME") == 0) take_word(words.internal, value);
    if (strcmp(key, "USB_DISKNAME") == 0) take_word(words.usb, value);
    for (const RowKey& row_key : kRowKeys) {
        if (strcmp(key, row_key.key) != 0) continue;
        struct disk_path* row = table.add();
        if (row == nullptr) return false;
        SlotFields fields(value);
        SlotTexts texts = {fields.text[0], fields.text[1], fields.text[2], fields.text[3]};
        return fill_row(*row, row_key.type, texts, word_for(row_key.type, words));
    }
    return true;
}

}  // namespace

struct disk_path* get_DiskOrderConfig(void) {
    Descriptor file = open_for_reading(files::kDiskOrder);
    if (!file) return nullptr;
    SlotTableBuilder table;
    DiskWords words;
    LineReader reader(file.number, kSlotFilePiece);
    char line[kSlotFilePiece + 1];
    while (next_line(reader, line, sizeof line)) {
        char *key, *value;
        if (split_setting(line, key, value) && !take_setting(table, words, key, value)) return nullptr;
    }
    return table.release();
}
