#include <sys/stat.h>
#include <unistd.h>

#include "foundation/answer.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/shell.h"
#include "quorvel/disk.h"

using namespace quorvel;

namespace {

// The fields of a line of /proc/mounts: "/dev/md2 /mnt/array1 xfs rw,relatime 0 0".
constexpr int kMountPointField = 2;
constexpr int kTypeField = 3;

void mount_and_unmount(const char* device) {
    Text<kCommandSize> mount("mount %s %s", ShellWord(device).c_str(), files::kTrialMountPoint);
    if (mount.cut) return;
    (void)run_command(mount);  // a failed mount has probed the device as well
    (void)run_command(Text<kCommandSize>("umount -f %s", files::kTrialMountPoint));
}

}  // namespace

int IsMounted(const char* text) {
    constexpr size_t kPiece = 8191;
    Descriptor mounts = open_for_reading(files::kMounts);
    if (text == nullptr || !mounts) return 0;
    LineReader reader(mounts.number, kPiece);
    for (std::string_view line; !(line = next_piece(reader)).empty();) {
        if (line.find(text) != line.npos) return 1;
    }
    return 0;
}

int LibQuorvelBin_GetFsType(char* type, size_t size, const char* mount_point) {
    constexpr size_t kPiece = 1023;
    Descriptor mounts = open_for_reading(files::kMounts);
    if (type == nullptr || mount_point == nullptr || !mounts) return -1;
    LineReader reader(mounts.number, kPiece);
    for (char line[kPiece + 1]; next_line(reader, line, sizeof line);) {
        char field[kPiece + 1];
        if (LibQuorvelBin_GetSpecifiedKey(field, sizeof field, line, " ", kMountPointField) != 0) continue;
        if (strcmp(field, mount_point) != 0) continue;
        if (LibQuorvelBin_GetSpecifiedKey(type, size, line, " ", kTypeField) != 0) return -1;
        answer(type);
        return 0;
    }
    return -1;
}

int LibQuorvelBin_MountTest(const char* device) {
    if (device == nullptr) return 0;
    bool present = IsDirExist(files::kTrialMountPoint) == 1;
    if (!present && mkdir(files::kTrialMountPoint, S_IRWXU) != 0) return 0;
    mount_and_unmount(device);
    // Only the empty directory: if the device is still mounted there, what is on it must stay.
    if (!present) (void)rmdir(files::kTrialMountPoint);
    return 0;
}

int diskcntl(void) {
    return -1;
}
