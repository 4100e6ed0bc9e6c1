// /etc/extslot.conf: the slots of a PCI extension card, with a section for each card it may be.
#include <stdio.h>

#include "disk/slot_lines.h"
#include "disk/slot_table.h"
#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"

using namespace quorvel;

namespace {

// The USB line's misplaced tab and missing comma are part of the interface.
void dump_row(const struct disk_path& row, int extension_slot) {
    const char* path = row.path != nullptr ? row.path : "";
    const char* address = row.scsi_id != nullptr ? row.scsi_id : "";
    if (row.type == DISK_PATH_INTERNAL)
        printf("%s%d=SATA,\t%d,\t%s,\t%s\n", kExtensionRow, extension_slot, row.slot, path, address);
    if (row.type == DISK_PATH_USB) {
        printf("%s%d=USB,\t%d,\t%s\t,%d\t%d\n", kExtensionRow, extension_slot, row.slot, path, row.usb_port1,
               row.usb_port2);
    }
}

void dump_file(const ExtensionFile& file) {
    printf(";%s\n", files::kExtensionSlots);
    for (int i = 0; i < kExtensionSlotCount; i++) {
        if (file.sata_words[i][0] != '\0') printf("EXTSLOT%d_SATADISKNAME=%s\n", i + 1, file.sata_words[i]);
        if (file.usb_words[i][0] != '\0') printf("EXTSLOT%d_USBDISKNAME=%s\n", i + 1, file.usb_words[i]);
    }
    puts(";");
    for (int i = 0; i < file.table.count; i++)
        dump_row(file.table.rows[i], file.extension_slots.get()[i]);
}

[[nodiscard]] struct disk_path* read_extension_slots(bool may_print) {
    LineFile lines(open_for_reading(files::kExtensionSlots), kSlotFilePiece);
    if (!lines) return nullptr;
    ExtensionFile file;
    file.card = find_card();
    for (char* line : lines) {
        if (take_section(file, line)) continue;
        const auto setting = split_setting(line);
        if (!setting) continue;
        SlotFault fault = take_extension_setting(file, setting->key, setting->value);
        if (fault == SlotFault::kNone) continue;
        if (may_print && file.dump)
            printf("%s parse error LINE=%s=%s\n", files::kExtensionSlots, setting->key, setting->value);
        return fail_null(reason_of(fault));
    }
    if (may_print && file.dump && file.table.count > 0) dump_file(file);
    return file.table.release();
}

}  // namespace

struct disk_path* get_ExtSlotConfig(void) {
    return read_extension_slots(true);
}

DiskSet quorvel::extension_slots() {
    return DiskSet(read_extension_slots(false));
}
