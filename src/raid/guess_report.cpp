// The guess report: what every array and disk is, for scripts that run before any array is assembled. A reader takes
// the last value of a key.
#include <stdio.h>

#include "foundation/appliance_files.h"
#include "foundation/trace.h"
#include "quorvel/disk.h"
#include "quorvel/foundation.h"
#include "raid/inventory.h"
#include "raid/list.h"
#include "raid/pairing.h"

using namespace quorvel;

namespace {

void print_numbered(const char* kind, int first, int last, const char* value) {
    for (int before = first - 1; before < last; before++)
        printf("%s%d=%s\n", kind, before + 1, value);
}

void trace_members(const pareinfo& group) {
    int count = 0;
    for (auto* member = first_of<pareinfo_member>(group.members); member != nullptr;
         member = next_of(member, group.members)) {
        trace(kTraceDetail, "get_pareinfo->device->name=%s\n", member->device->name);
        count++;
    }
    if (count > 0) trace(kTraceDetail, "pare_parts_count=%d\n", count);
    trace(kTraceDetail, "pare_parts_count=%d\n", count);
}

void trace_linked_disks(const char* array_name) {
    int count = first_of<diskinfo>(diskinfo_list) != nullptr ? 0 : -1;
    for (auto* disk = first_of<diskinfo>(diskinfo_list); disk != nullptr; disk = next_of(disk, diskinfo_list)) {
        if (disk->in_array != nullptr && strcmp(disk->in_array->name, array_name) == 0) count++;
    }
    trace(kTraceDetail, "devices_in_array_judge_from_sb = %d\n", count);
}

// How many members are missing from the group's superblock.
int64_t print_array(const pareinfo& group, const char* name) {
    if (tracing(kTraceDetail)) {
        trace_members(group);
        trace_linked_disks(name);
    }
    const int64_t missing = int64_t{group.raid_devices} - group.total_devices;
    if (missing >= 1) {
        puts("Warning(0)!!! : Not match between 'raid devices counts' and 'raid total devices counts'");
        printf("Warning(0)!!! : Maybe %s is degraded.\n", name);
    }
    printf("%s=raid%d\n", name, group.level);
    return missing;
}

// A trial mount tells an array's member from a disk of its own.
bool is_array_member(const char* disk_name) {
    const Text<160> device(files::kMemberPartition, disk_name, get_hdd_link_partno());
    trace(kTraceDetail, "Trying to mount test %s\n", device.c_str());
    return LibQuorvelBin_MountTest(device.c_str()) != 0;
}

void print_disk(int number, int64_t missing) {
    const diskinfo* disk = find_disk(number);
    if (disk == nullptr) {
        printf("disk%d=", number);  // no value and no line end
        return;
    }
    if (disk->in_array != nullptr) {
        printf("%s=%s\n", disk->name, disk->in_array->name);
        return;
    }
    const bool mounted = (disk->status & DISK_MOUNTED) != 0;
    if (missing != 0 && mounted) printf("%s : IS_MOUNT_OK condition\n", disk->name);
    const bool member = missing != 0 && !mounted && is_array_member(disk->name);
    printf("%s=%s\n", disk->name, member ? "array" : "normal");
}

}  // namespace

void print_guess(int group_count) {
    const int arrays = LibQuorvelBin_GetMaxArrayNum();
    const int disks = LibQuorvelBin_GetMaxDiskNum();
    if (group_count == 2) {  // a striped pair of mirrors
        print_numbered("array", 1, 1, "raid10");
        print_numbered("array", 2, arrays, "off");
        print_numbered("disk", 1, disks, "array1");
    }
    // What the last array found leaves behind decides how the disks are looked at.
    int64_t missing = 0;
    for (int i = 0; i < arrays; i++) {
        const Text<32> name("array%d", i + 1);
        const pareinfo* group = LibQuorvelBin_SearchPareInfo(name.c_str(), INFO_KEY_ARRAYNAME);
        if (group != nullptr) {
            missing = print_array(*group, name.c_str());
        } else {
            printf("%s=off\n", name.c_str());
        }
    }
    for (int i = 0; i < disks; i++)
        print_disk(i + 1, missing);
}

void quorvel::print_guess_report() {
    int count = 0;
    for (auto* group = first_of<pareinfo>(pareinfo_list); group != nullptr; group = next_of(group, pareinfo_list))
        count++;
    if (count == 0) {
        print_numbered("array", 1, LibQuorvelBin_GetMaxArrayNum(), "off");
        print_numbered("disk", 1, LibQuorvelBin_GetMaxDiskNum(), "normal");
        return;
    }
    trace(kTraceDetail, "pare_count=%d\n", count);
    print_guess(count);
}
