// /etc/diskpath.conf: a whole slot table for this machine.
#include "disk/slot_lines.h"
#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "quorvel/naming.h"

using namespace quorvel;

struct disk_path* get_DiskOrderConfig(void) {
    LineFile lines(open_for_reading(files::kDiskOrder), kSlotFilePiece);
    if (!lines) return nullptr;
    DiskOrder order;
    for (char* line : lines) {
        const auto setting = split_setting(line);
        if (!setting) continue;
        SlotFault fault = take_disk_order_setting(order, setting->key, setting->value);
        if (fault != SlotFault::kNone) return fail_null(reason_of(fault));
    }
    return order.table.release();
}
