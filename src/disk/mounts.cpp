#include "foundation/answer.h"
#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/mount_table.h"
#include "quorvel/disk.h"

using namespace quorvel;

namespace {

// The fields of a line of /proc/mounts: "/dev/md2 /mnt/array1 xfs rw,relatime 0 0".
constexpr int kMountPointField = 2;
constexpr int kTypeField = 3;

}  // namespace

int IsMounted(const char* text) {
    if (text == nullptr) return fail(EINVAL, 0);
    return any_mount(contains, text) ? 1 : 0;
}

int LibQuorvelBin_GetFsType(char* type, size_t size, const char* mount_point) {
    constexpr size_t kPiece = 1023;
    if (type == nullptr || mount_point == nullptr) return fail(EINVAL);
    LineFile mounts(open_for_reading(files::kMounts), kPiece);
    if (!mounts) return -1;
    for (const char* line : mounts) {
        char field[kPiece + 1];
        if (LibQuorvelBin_GetSpecifiedKey(field, sizeof field, line, " ", kMountPointField) != 0) continue;
        if (strcmp(field, mount_point) != 0) continue;
        if (LibQuorvelBin_GetSpecifiedKey(field, sizeof field, line, " ", kTypeField) != 0) return fail(EBADMSG);
        if (strlen(field) >= size) return fail(ERANGE);
        copy_text(type, size, field);
        hide_control_bytes(field);  // an account that mounts chooses what stands behind "fuse."
        answer(field);
        return 0;
    }
    return fail(ENODATA);
}

int diskcntl(void) {
    return fail(ENOSYS);
}
