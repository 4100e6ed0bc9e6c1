// LVM membership, from the list of physical volumes that the storage scripts keep:
//
//     /dev/md2<>lvm2<>vg_array1<>...       volume, something, its group (empty without one)
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "foundation/trusted.h"
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
    constexpr size_t kPiece = 126;
    if (devname == nullptr) return fail(EINVAL, 0);
    LineFile list(open_trusted(files::kPhysicalVolumes), kPiece);
    for (const char* line : list) {
        if (contains(line, devname) && has_group(line)) return 1;
    }
    return 0;
}

int IsLVMDisk(const char* name) {
    constexpr size_t kPiece = 1023;
    if (name == nullptr) return fail(EINVAL, 0);
    bool found = false;
    LineFile list(open_trusted(files::kPhysicalVolumes), kPiece);
    for (const char* line : list) {
        char group[kPiece + 1];
        found = LibQuorvelBin_GetSpecifiedKey(group, sizeof group, line, kSeparator, 3) == 0 && contains(group, name);
        if (found) break;
    }
    trace(kTrace, "[%s]>disk [%s] = %s\n", __func__, name, found ? "LVM" : "normal");
    return found ? 1 : 0;
}
