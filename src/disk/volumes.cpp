// LVM membership, from the list of physical volumes that the storage scripts keep:
//
//     /dev/md2<>lvm2<>vg_array1<>...       volume, something, its group (empty without one)
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "quorvel/naming.h"

using namespace quorvel;

namespace {

constexpr char kSeparator[] = "<>";

// Whether something stands behind a line's second separator.
bool has_group(const char* line) {
    for (int i = 0; i < 2; i++) {
        line = strstr(line, kSeparator);
        if (line == nullptr) return false;
        line += strlen(kSeparator);
    }
    return line[strspn(line, "\r\n")] != '\0' && !starts_with(line, kSeparator);
}

}  // namespace

int LibQuorvelBin_IsLvmVolume(const char* devname) {
    if (devname == nullptr) return 0;
    Descriptor list = open_for_reading(files::kPhysicalVolumes);
    if (!list) return 0;
    char line[127];
    LineReader reader(list.number, sizeof line - 1);
    while (next_line(reader, line, sizeof line)) {
        if (contains(line, devname) && has_group(line)) return 1;
    }
    return 0;
}

int IsLVMDisk(const char* name) {
    if (name == nullptr) return 0;
    char line[1024], group[1024];
    bool found = false;
    Descriptor list = open_for_reading(files::kPhysicalVolumes);
    LineReader reader(list.number, sizeof line - 1);
    reader.at_end = !list;
    while (!found && next_line(reader, line, sizeof line)) {
        found = LibQuorvelBin_GetSpecifiedKey(group, sizeof group, line, kSeparator, 3) == 0 && contains(group, name);
    }
    trace(kTrace, "[%s]>disk [%s] = %s\n", __func__, name, found ? "LVM" : "normal");
    return found ? 1 : 0;
}
