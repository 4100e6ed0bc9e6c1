#include "raid/mode_tables.h"

#include <stdio.h>

#include <span>

#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "raid/inventory.h"

using namespace quorvel;

struct diskinfo_code array_mode_tbl[2];
struct diskinfo_code disk_mode_tbl[4];

namespace {

template <typename Record>
void fill_rows(std::span<diskinfo_code> rows, int count, Record* (*find)(int number), const char* kind) {
    for (int i = 0; i < count; i++) {
        const Record* record = find(i + 1);
        if (record == nullptr) {
            if (debug >= 0) printf("%s_mode=", kind);
            continue;
        }
        if (const size_t row = static_cast<size_t>(i); row < rows.size()) {
            rows[row] = {record->diskinfo_status, ""};
            copy_text(rows[row].name, sizeof rows[row].name, record->name);
        }
        trace(kTraceDetail, "get_%sinfo->diskinfo_status=%s\n", kind, str_diskinfo_value(record->diskinfo_status));
    }
}

}  // namespace

void fill_mode_tables(void) {
    fill_rows<arrayinfo>(array_mode_tbl, LibQuorvelBin_GetMaxArrayNum(), find_array, "array");
    fill_rows<diskinfo>(disk_mode_tbl, LibQuorvelBin_GetMaxDiskNum(), find_disk, "disk");
}
