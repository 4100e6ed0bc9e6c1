// Kernel device names to logical disk names and back, and the SCSI address of a slot.
#include <stdio.h>
#include <string.h>
#include <time.h>

#include "disk/device_table.h"
#include "disk/disk_name.h"
#include "disk/naming_rules.h"
#include "disk/slot_match.h"
#include "disk/slot_table.h"
#include "foundation/answer.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/numbers.h"
#include "foundation/trace.h"
#include "quorvel/platform.h"

using namespace quorvel;

namespace quorvel {

GivenName::GivenName(const char* given) {
    if (given == nullptr || given[0] == '\0' || given[1] == '\0') return;
    refused = false;
    const char* behind = without_dev_prefix(given);
    had_dev = behind != given;
    copy_text(text, sizeof text, {behind, strcspn(behind, "\n")});
}

}  // namespace quorvel

namespace {

// A device's link below /sys/block, and the path it makes: "/sys/block/" with the link of the device's own entry, or,
// where sysfs has the old layout, "/sys/block/DEVICE/" with that of its "device" entry.
struct DevicePath {
    char full[4352];
    size_t link_at = 0;
    size_t length = 0;
    bool new_sysfs = has_new_sysfs();

    DiskPlace place() const {
        return {
            {full,           length          },
            {full + link_at, length - link_at}
        };
    }
};

char* put(char* at, std::string_view text) {
    return static_cast<char*>(mempcpy(at, text.data(), text.size()));
}

bool find_path(const char* device, DevicePath& path) {
    char entry[2 * kDiskNameSize];
    char* end = put(put(entry, files::kBlockDevices), "/");
    if (!path.new_sysfs) end = put(put(end, device), "/");
    path.link_at = static_cast<size_t>(end - entry);
    *put(end, path.new_sysfs ? device : "device") = '\0';
    char* link = put(path.full, {entry, path.link_at});
    if (!read_link(entry, link, sizeof path.full - path.link_at)) return false;
    path.length = path.link_at + strlen(link);
    return true;
}

// The matcher never gives a row up that does not let it decide; it must not take a whole processor for that.
bool after_a_pause() {
    struct timespec pause = {0, 100'000'000};
    (void)nanosleep(&pause, nullptr);
    return true;
}

// The index of the row that names a disk, with the name written; or of END.
int name_by_table(const struct disk_path* set, const DiskPlace& disk, const char* prefix, DiskName& name) {
    int index = find_row(set, disk, after_a_pause);
    const struct disk_path& row = set[index];
    if (row.type != DISK_PATH_END) name.append("%s%s%d", prefix, word_of_row(row), row.slot);
    return index;
}

bool is_named_by(const struct disk_path* set, const DiskPlace& disk, const char* prefix, DiskName& name) {
    return set != nullptr && set[name_by_table(set, disk, prefix, name)].type != DISK_PATH_END;
}

bool name_device(const GivenName& device, const DevicePath& path, const struct disk_path* set, DiskName& name) {
    DiskPlace disk = path.place();
    if (set != nullptr) {
        return is_named_by(set, disk, device.prefix(), name) ||
               is_named_by(LoadedDiskSet(get_ExtSlotConfig()).get(), disk, device.prefix(), name);
    }
    const char* word = nullptr;
    int number = 0;
    if (!name_by_rules(device.text, disk, path.new_sysfs, word, number)) return false;
    name.append("%s%s%d", device.prefix(), word, number);
    return true;
}

bool is_device_in(const struct disk_path* set, int index) {
    return index >= 0 && set[index].type != DISK_PATH_END;
}

bool find_by_tables(const struct disk_path* set, const char* disk, char (&device)[256]) {
    int index = find_device(set, disk, device);
    if (index < 0) return false;
    if (is_device_in(set, index)) return true;
    LoadedDiskSet extension(get_ExtSlotConfig());
    return extension && is_device_in(extension.get(), find_device(extension.get(), disk, device));
}

void give_ruled_device(const GivenName& disk, char (&device)[256], char* dst, size_t size) {
    if (!disk.had_dev) {
        copy_text(dst, size, device);
        return;
    }
    device[kShortName] = '\0';
    trace(kTrace, "[%s]>tmp_dev_name = [%s] \n", "LibQuorvelBin_GetDevnameFromDiskname", device);
    (void)snprintf(dst, size, "/dev/%s", device);
}

const char* address_of_slot(const struct disk_path* set, int slot) {
    while (set->type != DISK_PATH_END && !(set->type == DISK_PATH_INTERNAL && set->slot == slot))
        set++;
    return set->scsi_id;
}

}  // namespace

int LibQuorvelBin_GetDisknameFromDevname(const char* devname, char* dst, size_t size) {
    GivenName device(devname);
    if (device.refused || dst == nullptr) return -1;
    DevicePath path;
    if (!find_path(device.text, path)) return -1;
    DiskName name;
    if (!name_device(device, path, DiskSet(LibQuorvelBin_GetPlatformDiskSet()).get(), name)) return -1;
    if (name.length > kShortName && name.length >= size) return -1;
    memcpy(dst, name.c_str(), name.length + 1);
    answer(dst);
    return 0;
}

int LibQuorvelBin_GetDevnameFromDiskname(const char* diskname, char* dst, size_t size) {
    GivenName disk(diskname);
    if (disk.refused || dst == nullptr || size == 0) return -1;
    char device[256];
    DiskSet set(LibQuorvelBin_GetPlatformDiskSet());
    if (set) {
        if (!find_by_tables(set.get(), disk.text, device)) return -1;
        (void)snprintf(dst, size, "%s%s", disk.prefix(), device);
    } else {
        if (!device_by_rules(disk.text, device)) return -1;
        give_ruled_device(disk, device, dst, size);
    }
    answer(dst);
    return 0;
}

int LibQuorvelBin_GetScsiIDFromDiskname(const char* name, char* dst, size_t size) {
    GivenName disk(name);
    if (disk.refused || dst == nullptr || size == 0) return -1;
    const struct disk_path* set = LibQuorvelBin_GetPlatformDiskSet();
    if (set == nullptr) return -1;

    DiskName converted;
    const char* logical = disk.text;
    if (contains(disk.text, "sd")) {
        int saved = from_cmdline;
        from_cmdline = 0;
        DevicePath path;
        // What is left of the name is taken as any caller's: another "dev/" in it falls away too.
        GivenName device(disk.text);
        // Only a conversion that works puts the flag back.
        if (!find_path(device.text, path) || !name_device(device, path, set, converted)) return -1;
        from_cmdline = saved;
        logical = converted.c_str();
    }
    std::optional<int> slot = number_after(logical, "disk");
    if (contains(logical, "usb") || contains(logical, "bootdisk") || !slot) return -1;
    const char* address = address_of_slot(set, *slot);
    if (address == nullptr) return -1;
    (void)snprintf(dst, size, "%s", address);
    answer(dst);
    return 0;
}
