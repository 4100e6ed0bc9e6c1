// The arrays: which md devices the model and the status file name, and what the driver and mdadm tell of them.
#include <inttypes.h>
#include <linux/major.h>
#include <linux/raid/md_u.h>
#include <stddef.h>
#include <sys/ioctl.h>

#include <iterator>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/trace.h"
#include "raid/inventory.h"
#include "raid/list.h"

using namespace quorvel;

struct list_links arrayinfo_list = {&arrayinfo_list, &arrayinfo_list};
struct md_trans_entry md_trans_tbl[16];

static_assert(sizeof(mdu_array_info_t) == 72, "the size is part of the request's number");
static_assert(offsetof(arrayinfo, name) == sizeof(list_links));

namespace {

constexpr int kTableRows = std::size(md_trans_tbl);
constexpr size_t kNameSize = 128;

// Data arrays stand in these rows whatever MAX_DISK_NUM is.
constexpr int kFirstDataRow = 3;
constexpr size_t kDataArrays = 8 - kFirstDataRow;

constexpr KeyField kArrayKeys[] = {
    {INFO_KEY_MDNAME,    offsetof(arrayinfo, md_name)},
    {INFO_KEY_ARRAYNAME, offsetof(arrayinfo, name)   },
    {INFO_KEY_UUID,      offsetof(arrayinfo, sb.uuid)},
};

// What the status file says of a data array.
struct DataArray {
    Text<16> name;
    Text<16> device_key;
    char level[kNameSize] = "";
    char device[kNameSize] = "";
    bool present = false;
};

void read_data_arrays(DataArray (&arrays)[kDataArrays]) {
    KeyRequest requests[2 * kDataArrays];
    for (size_t i = 0; i < kDataArrays; i++) {
        DataArray& array = arrays[i];
        array.name.append("array%zu", i + 1);
        array.device_key.append("array%zu_dev", i + 1);
        requests[2 * i] = {array.name.c_str(), array.level, sizeof array.level};
        requests[2 * i + 1] = {array.device_key.c_str(), array.device, sizeof array.device};
    }
    read_keys(files::kDiskInfo, requests);
    for (size_t i = 0; i < kDataArrays; i++)
        arrays[i].present = requests[2 * i].found || arrays[i].device[0] != '\0';
}

void fill_md_trans_tbl() {
    LibQuorvelBin_SetMdTransTbl(0, "DEV_BOOT", "array_boot");
    LibQuorvelBin_SetMdTransTbl(1, "DEV_ROOTFS1", "array_rootfs");
    LibQuorvelBin_SetMdTransTbl(2, "DEV_SWAP1", "array_swap");

    DataArray arrays[kDataArrays];
    read_data_arrays(arrays);
    for (size_t i = 0; i < kDataArrays && arrays[i].present; i++) {
        // A volume on a single disk: the number behind "disk" names the feature. Behind a shorter value are zeros.
        const char* device = arrays[i].device;
        Text<kNameSize> feature;
        if (device[0] != '\0') {
            feature.append("DEVICE_HDD%s_EDP", device + strlen("disk"));
        } else {
            feature.append("DEVICE_MD%zu_REAL", i + 1);
        }
        LibQuorvelBin_SetMdTransTbl(kFirstDataRow + static_cast<int>(i), feature.c_str(), arrays[i].name.c_str());
    }
}

// The md device names of all rows from one pass over the feature file; empty where there is none.
void read_md_names(char (&md_names)[kTableRows][kNameSize]) {
    KeyRequest requests[kTableRows];
    size_t count = 0;
    for (int row = 0; row < kTableRows; row++) {
        const char* feature = md_trans_tbl[row].feature_name;
        if (feature[0] == '\0' || !is_possible_key(feature)) continue;
        requests[count++] = {feature, md_names[row], sizeof md_names[row]};
    }
    read_keys(files::kFeature, {requests, count});
}

void read_mounted_sizes(arrayinfo& array) {
    const MountPath path = mount_path(array.name);
    const auto sizes = mounted_sizes(path);
    if (!sizes) return;
    array.partition_info = *sizes;
    trace(kTraceDetail, "%s is mounted\ntotal_size : %" PRIu64 "\nused_size  : %" PRIu64 "\navail_size : %" PRIu64 "\n",
          path.c_str(), sizes->total_size, sizes->used_size, sizes->avail_size);
}

// Lists the array of a row; one whose device node cannot be opened does not exist.
void add_array(const md_trans_entry& row, const char* md_name) {
    const Text<kNameSize + 8> path(files::kDevice, md_name);
    Descriptor device = open_for_update(path);
    if (!device) return;
    Heap<arrayinfo> array = new_record<arrayinfo>();
    if (array == nullptr) return;

    array->major = array->minor = array->level = array->raid_disks = array->state = -1;
    array->active_disks = array->working_disks = array->failed_disks = array->spare_disks = -1;
    copy_text(array->md_name, sizeof array->md_name, md_name);
    copy_text(array->name, sizeof array->name, row.array_name);
    array->diskinfo_status = get_diskinfo_status(array->name);
    if (get_array_info(device.number, array.get()) == 0) {
        (void)get_md_superblock(path.c_str(), &array->sb);  // what is not told stays unknown in the record
    } else {
        trace(kTraceDetail, "md %s is not exist(not active)\n", path.c_str());
    }
    read_mounted_sizes(*array);
    trace(kTraceDetail, "%s added to list.\n", array->name);
    list_add(&array.release()->links, &arrayinfo_list);
}

// The fields themselves are never cleared.
template <size_t Size>
void write_over(char (&field)[Size], const char* text) {
    memcpy(field, text, strnlen(text, Size - 1));
}

}  // namespace

void LibQuorvelBin_SetMdTransTbl(int row, const char* feature_name, const char* array_name) {
    if (row < 0 || row >= kTableRows || feature_name == nullptr || array_name == nullptr) return;
    write_over(md_trans_tbl[row].feature_name, feature_name);
    write_over(md_trans_tbl[row].array_name, array_name);
}

int LibQuorvelBin_InitMdInfo(void) {
    fill_md_trans_tbl();
    make_empty(arrayinfo_list);
    char md_names[kTableRows][kNameSize] = {};
    read_md_names(md_names);
    for (int row = 0; row < kTableRows; row++) {
        if (md_names[row][0] != '\0') add_array(md_trans_tbl[row], md_names[row]);
    }
    return 0;
}

int get_array_info(int descriptor, struct arrayinfo* array) {
    mdu_array_info_t info = {};
    if (array == nullptr || ioctl(descriptor, GET_ARRAY_INFO, &info) != 0 || info.raid_disks == 0) return -1;
    array->major = MD_MAJOR;
    array->minor = info.md_minor;
    array->level = info.level;
    array->raid_disks = info.raid_disks;
    array->state = info.state;
    array->active_disks = info.active_disks;
    array->working_disks = info.working_disks;
    array->failed_disks = info.failed_disks;
    array->spare_disks = info.spare_disks;
    // The names of disk states are used for the array's state word, here as in the reports.
    trace(kTraceDetail,
          "arrayinfo->major=%d\narrayinfo->minor=%d\narrayinfo->level=%d\narrayinfo->raid_disks=%d\n"
          "arrayinfo->state=%d (%s)\narrayinfo->active_disks=%d\narrayinfo->working_disks=%d\n"
          "arrayinfo->failed_disks=%d\narrayinfo->spare_disks=%d\n",
          array->major, array->minor, array->level, array->raid_disks, array->state, str_md_state(array->state),
          array->active_disks, array->working_disks, array->failed_disks, array->spare_disks);
    return 0;
}

struct arrayinfo* LibQuorvelBin_SearchArrayInfo(const char* key, int mode) {
    return reinterpret_cast<arrayinfo*>(find_record(arrayinfo_list, kArrayKeys, key, mode, "ARRAY"));
}

arrayinfo* quorvel::find_array_of_minor(int minor) {
    return LibQuorvelBin_SearchArrayInfo(Text<32>("md%d", minor).c_str(), INFO_KEY_MDNAME);
}

arrayinfo* quorvel::find_array(int number) {
    return LibQuorvelBin_SearchArrayInfo(Text<32>("array%d", number).c_str(), INFO_KEY_ARRAYNAME);
}
