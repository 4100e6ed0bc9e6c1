#include "disk_guard.h"

#include <errno.h>
#include <fcntl.h>
#include <mntent.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <initializer_list>
#include <string_view>

#include "block_devices.h"
#include "foundation/look.h"
#include "naming_commands.h"
#include "quorvel/naming.h"

using namespace quorvel;

namespace {

// True, as the answer to what stands in the way.
bool because(Reason& reason, std::initializer_list<std::string_view> words) {
    for (std::string_view word : words)
        reason.add(word);
    return true;
}

// The block device that a path leads to by itself or through links; it is not opened.
[[nodiscard]] bool block_number(const char* path, dev_t& number) {
    struct stat status;
    if (!read_status(path, status)) return false;
    number = status.st_rdev;
    return S_ISBLK(status.st_mode);
}

bool is_listed(const char* table, dev_t number, Text<256>& where) {
    FILE* list = setmntent(table, "re");
    if (list == nullptr) return false;
    bool found = false;
    // A program that an account mounts is listed under any name, also one that only the program can look up.
    while (const struct mntent* entry = found ? nullptr : getmntent(list)) {
        dev_t listed;
        found = is_device_path(entry->mnt_fsname) && block_number(entry->mnt_fsname, listed) && listed == number;
        if (found) where.add(entry->mnt_dir);
    }
    endmntent(list);
    return found;
}

bool is_backing(dev_t number, Text<256>& loop) {
    return any_entry(kBlockDevices, [&](const char* name) {
        char file[4096];  // the kernel tells a path of any length that it opens
        dev_t backing;
        if (!read_first_line(SysPath("%s/%s/loop/backing_file", kBlockDevices, name).c_str(), file, sizeof file) ||
            !block_number(file, backing) || backing != number) {
            return false;
        }
        loop.add(name);
        return true;
    });
}

bool part_in_use(const char* directory, const char* name, dev_t number, Reason& reason) {
    Text<256> other;
    if (is_listed("/proc/mounts", number, other)) return because(reason, {name, " is mounted at ", other.c_str()});
    if (is_listed("/proc/swaps", number, other)) return because(reason, {name, " is used as swap space"});
    if (is_backing(number, other)) return because(reason, {name, " is shown as ", other.c_str()});
    return any_entry(SysPath("%s/holders", directory).c_str(), [&](const char* holder) {
        return because(reason, {name, " is held by ", holder});
    });
}

bool is_usb_place(const char* kernel) {
    char place[1024];
    return read_link(SysPath("%s/%s", kBlockDevices, kernel).c_str(), place, sizeof place) && contains(place, "/usb");
}

int take_name(const struct disk_entry* entry, void* wanted) {
    Disk& disk = *static_cast<Disk*>(wanted);
    if (strcmp(entry->device, disk.kernel) != 0) return 0;
    disk.kind = entry->kind;
    if (entry->name[0] != '\0') copy_text(disk.name, sizeof disk.name, entry->name);
    return 1;
}

}  // namespace

bool find_disk(const char* path, Disk& disk, Reason& reason) {
    dev_t number;
    if (!block_number(path, number)) return !because(reason, {path, " is no block device"});
    bool found = any_entry(kBlockDevices, [&](const char* name) {
        dev_t whole;
        if (!read_number(SysPath("%s/%s", kBlockDevices, name).c_str(), whole) || whole != number) return false;
        copy_text(disk.kernel, sizeof disk.kernel, name);
        return true;
    });
    if (!found) return !because(reason, {path, " is no whole disk"});
    snprintf(disk.node, sizeof disk.node, "/dev/%s", disk.kernel);
    dev_t own;
    if (!block_number(disk.node, own) || own != number)
        return !because(reason, {disk.node, " is not the disk behind ", path});
    // A disk that is not listed has no name. Without a list none has one, and a bay's disk would count as anybody's.
    if (LibQuorvelBin_WalkDisks(take_name, &disk) < 0) {
        return !because(reason, {"the disks cannot be listed, so ", disk.node, " may be any"});
    }
    disk.usb = is_usb_place(disk.kernel);
    return true;
}

bool is_in_use(const Disk& disk, Reason& reason) {
    auto visit = [&reason](const char* directory, const char* name, dev_t number) {
        return part_in_use(directory, name, number, reason);
    };
    if (any_part(disk.kernel, visit)) return true;
    // What no list tells, such as a mount elsewhere, the kernel knows. What cannot be opened cannot be erased either.
    Descriptor exclusive(open(disk.node, O_RDONLY | O_EXCL | O_NONBLOCK | O_CLOEXEC));
    return !exclusive && errno == EBUSY && because(reason, {disk.kernel, " is in use"});
}

bool is_claimed(const Disk& disk, int32_t layout_kind, Reason& reason) {
    if (disk.kind == layout_kind) return false;
    if (disk.kind != DISK_PATH_END) return because(reason, {disk.kernel, " is ", disk.name});
    return layout_kind != DISK_PATH_USB && disk.usb && because(reason, {disk.kernel, " is a USB disk"});
}

// Programs agree on a lock of the whole disk's node; one that looks has it for a moment. It is opened for writing
// because that is what the hot-plug side waits for: at the end it looks anew at a disk that it has left alone
// meanwhile.
bool is_taken(const char* node, Descriptor& turn, Reason& reason) {
    constexpr int kTries = 60;
    constexpr useconds_t kPause = 50'000;
    turn = open_for_update(node);
    for (int tried = 0; turn && tried < kTries; tried++) {
        // What knows no locks has nobody who takes one.
        if (flock(turn.number, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR)) return false;
        usleep(kPause);
    }
    // What cannot be opened cannot be erased either.
    return turn && because(reason, {"another program is at work on ", node});
}
