// /etc/diskpath.conf: a whole slot table for this machine.
#include "disk/slot_lines.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "quorvel/naming.h"

using namespace quorvel;

struct disk_path* get_DiskOrderConfig(void) {
    Descriptor file = open_for_reading(files::kDiskOrder);
    if (!file) return nullptr;
    DiskOrder order;
    LineReader reader(file.number, kSlotFilePiece);
    char line[kSlotFilePiece + 1];
    while (next_line(reader, line, sizeof line)) {
        char *key, *value;
        if (!split_setting(line, key, value)) continue;
        if (take_disk_order_setting(order, key, value) != SlotFault::kNone) return nullptr;
    }
    return order.table.release();
}
