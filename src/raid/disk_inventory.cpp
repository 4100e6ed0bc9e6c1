// The internal disk slots: presence, power, kernel name, mount, signature, recorded status and array superblock.
#include <inttypes.h>
#include <stddef.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/trace.h"
#include "quorvel/disk.h"
#include "quorvel/foundation.h"
#include "quorvel/naming.h"
#include "raid/inventory.h"
#include "raid/list.h"

using namespace quorvel;

struct list_links diskinfo_list = {&diskinfo_list, &diskinfo_list};

static_assert(offsetof(diskinfo, name) == sizeof(list_links));

namespace {

using SlotNode = Text<32>;

constexpr KeyField kDiskKeys[] = {
    {INFO_KEY_DISKNAME, offsetof(diskinfo, name)   },
    {INFO_KEY_UUID,     offsetof(diskinfo, sb.uuid)},
};

// A slot that cannot be hot swapped counts as occupied. The feature is asked for anew for every slot: a model without
// it prints its complaint for every slot.
void read_presence(diskinfo& disk, int slot_index) {
    trace(kTraceDetail, "checking connect status.\n");
    if (LibQuorvelBin_GetConfValByKey("SUPPORT_HOT_SWAP") != 1 || LibQuorvelBin_IsConnectedDisk(slot_index) == 1)
        disk.status |= DISK_CONNECTED;
    trace(kTraceDetail, "power supplyed or not.\n");
    if (LibQuorvelBin_IsPowerSupplyedDisk(slot_index) == 1) disk.status |= DISK_POWERED;
    trace(kTraceDetail, "power supplyed or not checked.\n");
}

// The slot's index is taken for its SCSI host number.
void read_device(diskinfo& disk, int slot_index, const SlotNode& device) {
    char scsiname[sizeof disk.scsiname] = "";
    if (LibQuorvelBin_GetScsinameFromDisknumber(slot_index, scsiname, sizeof scsiname) == 0) {
        copy_text(disk.scsiname, sizeof disk.scsiname, {scsiname, strnlen(scsiname, sizeof scsiname)});
        disk.status |= DISK_HAS_SCSINAME;
        trace(kTraceDetail, "tmp_scsi_device_name=%s\n", disk.scsiname);
    }
    if (open_for_update(device)) disk.status |= DISK_OPENABLE;
}

void read_mounted_sizes(diskinfo& disk) {
    const MountPath path = mount_path(disk.name);
    trace(kTraceDetail, "disk_mpt_path=%s\n", path.c_str());
    const auto sizes = mounted_sizes(path);
    if (!sizes) return;
    disk.status |= DISK_MOUNTED;
    disk.partition_info = *sizes;
    trace(kTraceDetail,
          "%s mounted\npdiskinfo->partition_info.total_size=%" PRIu64 "\npdiskinfo->partition_info.used_size=%" PRIu64
          "\npdiskinfo->partition_info.avail_size=%" PRIu64 "\n",
          path.c_str(), sizes->total_size, sizes->used_size, sizes->avail_size);
}

void add_disk(int slot_index, int member_partition) {
    Heap<diskinfo> disk = new_record<diskinfo>();
    if (disk == nullptr) return;
    copy_text(disk->name, sizeof disk->name, Text<32>("disk%d", slot_index + 1).c_str());
    const SlotNode device(files::kSlotNode, slot_index + 1);
    read_presence(*disk, slot_index);
    read_device(*disk, slot_index, device);
    read_mounted_sizes(*disk);
    LibQuorvelBin_LoadDiskSignature(device.c_str(), &disk->sig);
    disk->diskinfo_status = get_diskinfo_status(disk->name);
    (void)get_disk_superblock(device.c_str(), member_partition, disk->sb);  // that of no member is empty
    list_add(&disk.release()->links, &diskinfo_list);
}

void add_disks(int count) {
    if (count <= 0) return;
    const int member_partition = get_hdd_link_partno();
    for (int i = 0; i < count; i++)
        add_disk(i, member_partition);
}

}  // namespace

int LibQuorvelBin_InitDiskInfo(void) {
    // The answers of inner calls are none of this one's.
    const int printing = from_cmdline;
    from_cmdline = 0;
    make_empty(diskinfo_list);
    add_disks(LibQuorvelBin_GetMaxDiskNum());
    from_cmdline = printing;
    return 0;
}

struct diskinfo* LibQuorvelBin_SearchDiskInfo(const char* key, int mode) {
    return reinterpret_cast<diskinfo*>(find_record(diskinfo_list, kDiskKeys, key, mode, "DISK "));
}

diskinfo* quorvel::find_disk(int number) {
    return LibQuorvelBin_SearchDiskInfo(Text<32>("disk%d", number).c_str(), INFO_KEY_DISKNAME);
}
