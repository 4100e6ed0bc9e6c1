// Kernel device names to logical disk names and back, and the SCSI address of a slot.
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include "disk/device_path.h"
#include "disk/device_rules.h"
#include "disk/device_table.h"
#include "disk/disk_name.h"
#include "disk/naming_rules.h"
#include "disk/slot_table.h"
#include "foundation/answer.h"
#include "foundation/failure.h"
#include "foundation/numbers.h"
#include "foundation/trace.h"

using namespace quorvel;

namespace {

// The matcher never gives a row up that does not let it decide; it must not take a whole processor for that.
bool after_a_pause() {
    struct timespec pause = {0, 100'000'000};
    nanosleep(&pause, nullptr);  // a shorter pause does as well
    return true;
}

// The name's texts may be those of the extension card's table, which goes back to the caller for that.
std::optional<NamedDisk> named_by_tables(const struct disk_path* set, const DiskPlace& disk, DiskSet& extension) {
    std::optional<NamedDisk> named = named_by_table(set, disk, after_a_pause);
    if (named) return named;
    extension.reset(get_ExtSlotConfig());
    return named_by_table(extension.get(), disk, after_a_pause);
}

// The logical name of a device by a set, or by the rules without one; none, and errno.
std::optional<DiskName> name_of_device(const GivenName& device, const struct disk_path* set) {
    bool new_sysfs = has_new_sysfs();
    std::optional<DevicePath> path = device_path(device.text, new_sysfs);
    if (!path) return {};
    DiskSet extension;
    std::optional<NamedDisk> named = set != nullptr
                                         ? named_by_tables(set, path->place(), extension)
                                         : name_by_rules(read_wiring(), device.text, path->place(), new_sysfs);
    errno = ENXIO;
    if (!named) return {};
    return DiskName("%s%s%d", device.prefix(), named->word, named->number);
}

bool may_be_elsewhere(const FoundDevice& device) {
    return device.fault == ENXIO || device.fault == ENODEV;
}

FoundDevice find_by_tables(const struct disk_path* set, const char* disk) {
    FoundDevice device = find_device(set, disk);
    if (!may_be_elsewhere(device)) return device;
    DiskSet extension(get_ExtSlotConfig());
    if (!extension) return device;
    FoundDevice other = find_device(extension.get(), disk);
    // What is known of the disk counts: a row without a disk is more than no row.
    return other.fault == ENXIO ? device : other;
}

[[nodiscard]] int give_device(const GivenName& disk, const EntryName& device, char* dst, size_t size) {
    snprintf(dst, size, "%s%s", disk.prefix(), device.c_str());  // cut to its room, as the header says
    answer(dst);
    return 0;
}

EntryName cut_behind_prefix(const GivenName& disk, const EntryName& device) {
    if (!disk.had_dev) return device;
    EntryName cut("%.*s", static_cast<int>(kShortName), device.c_str());
    trace(kTrace, "[%s]>tmp_dev_name = [%s] \n", "LibQuorvelBin_GetDevnameFromDiskname", cut.c_str());
    return cut;
}

const char* address_of_slot(const struct disk_path* set, int slot) {
    while (set->type != DISK_PATH_END && !(set->type == DISK_PATH_INTERNAL && set->slot == slot))
        set++;
    return set->scsi_id;
}

}  // namespace

int LibQuorvelBin_GetDisknameFromDevname(const char* devname, char* dst, size_t size) {
    GivenName device = given_name(devname);
    if (device.fault != 0 || dst == nullptr) return fail(device.fault != 0 ? device.fault : EINVAL);
    std::optional<DiskName> name = name_of_device(device, set_in_force().get());
    if (!name) return -1;
    if (name->length > kShortName && name->length >= size) return fail(ERANGE);
    memcpy(dst, name->c_str(), name->length + 1);
    answer(dst);
    return 0;
}

int LibQuorvelBin_GetDevnameFromDiskname(const char* diskname, char* dst, size_t size) {
    GivenName disk = given_name(diskname);
    if (disk.fault != 0 || dst == nullptr || size == 0) return fail(disk.fault != 0 ? disk.fault : EINVAL);
    if (DiskSet set = set_in_force()) {
        FoundDevice device = find_by_tables(set.get(), disk.text);
        return device.fault == 0 ? give_device(disk, device.name, dst, size) : fail(device.fault);
    }
    std::optional<EntryName> device = device_by_rules(disk.text);
    return device ? give_device(disk, cut_behind_prefix(disk, *device), dst, size) : -1;
}

int LibQuorvelBin_GetScsiIDFromDiskname(const char* name, char* dst, size_t size) {
    GivenName disk = given_name(name);
    bool is_device = contains(disk.text, "sd");
    if (is_device) disk = given_name(disk.text);  // a conversion takes a name as any caller's
    if (disk.fault != 0 || dst == nullptr || size == 0) return fail(disk.fault != 0 ? disk.fault : EINVAL);
    const struct disk_path* set = LibQuorvelBin_GetPlatformDiskSet();
    if (set == nullptr) return -1;

    DiskName logical("%s", disk.text);
    if (is_device) {
        int saved = from_cmdline;
        from_cmdline = 0;
        std::optional<DiskName> converted = name_of_device(disk, set);
        if (!converted) return -1;  // only a conversion that works puts the flag back
        from_cmdline = saved;
        logical = *converted;
    }
    std::optional<int> slot = number_after(logical.c_str(), "disk");
    if (contains(logical.c_str(), "usb") || contains(logical.c_str(), "bootdisk") || !slot) return fail(ENXIO);
    const char* address = address_of_slot(set, *slot);
    if (address == nullptr) return fail(ENXIO);
    snprintf(dst, size, "%s", address);  // cut to its room, as the header says
    answer(dst);
    return 0;
}
