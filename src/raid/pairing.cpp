// The groups of disks that carry one array UUID, and their ties to the listed arrays.
#include "raid/pairing.h"

#include <stddef.h>
#include <stdio.h>

#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "raid/inventory.h"
#include "raid/list.h"

using namespace quorvel;

struct list_links pareinfo_list = {&pareinfo_list, &pareinfo_list};

namespace {

constexpr KeyField kGroupKeys[] = {
    {INFO_KEY_ARRAYNAME, offsetof(pareinfo, array_name)},
    {INFO_KEY_UUID,      offsetof(pareinfo, uuid)      },
};

// A group is named and counted by the first disk met, the highest one.
[[nodiscard]] pareinfo* add_group(const diskinfo& disk) {
    Heap<pareinfo> group = new_record<pareinfo>();
    if (group == nullptr) return nullptr;
    copy_text(group->uuid, sizeof group->uuid, disk.sb.uuid);
    group->level = disk.sb.level;
    group->raid_devices = disk.sb.raid_devices;
    group->total_devices = disk.sb.total_devices;

    trace(kTraceDetail, "md_name=md%d\n", disk.sb.minor);
    if (const arrayinfo* array = find_array_of_minor(disk.sb.minor)) {
        copy_text(group->array_name, sizeof group->array_name, array->name);
        trace(kTraceDetail, "array_name=%s\n", group->array_name);
    } else {
        printf("can't get arrayinfo @ %s\n", disk.name);
    }
    make_empty(group->members);
    list_add(&group->links, &pareinfo_list);
    trace(kTraceDetail, "pareinfo added. uuid=%s\n", group->uuid);
    return group.release();
}

void add_member(diskinfo& disk) {
    trace(kTraceDetail, "%s : %s\n", disk.name, disk.sb.uuid);
    if (disk.sb.uuid[0] == '\0') return;
    pareinfo* group = LibQuorvelBin_SearchPareInfo(disk.sb.uuid, INFO_KEY_UUID);
    if (group == nullptr) group = add_group(disk);
    Heap<pareinfo_member> member = new_record<pareinfo_member>();
    if (group == nullptr || member == nullptr) return;
    member->device = &disk;
    list_add(&member.release()->links, &group->members);
    trace(kTraceDetail, "DISKINFO(%s) added to UUID(%s) list\n", disk.name, group->uuid);
}

}  // namespace

int LibQuorvelBin_InitPareInfo(void) {
    int left = LibQuorvelBin_GetMaxDiskNum();
    make_empty(pareinfo_list);
    for (diskinfo* disk = first_of<diskinfo>(diskinfo_list); disk != nullptr && left > 0; left--) {
        add_member(*disk);
        disk = next_of(disk, diskinfo_list);
    }
    return 0;
}

struct pareinfo* LibQuorvelBin_SearchPareInfo(const char* key, int mode) {
    return reinterpret_cast<pareinfo*>(find_record(pareinfo_list, kGroupKeys, key, mode, nullptr));
}

void link_master_arrays(void) {
    for (auto* group = first_of<pareinfo>(pareinfo_list); group != nullptr; group = next_of(group, pareinfo_list)) {
        arrayinfo* array = LibQuorvelBin_SearchArrayInfo(group->array_name, INFO_KEY_ARRAYNAME);
        if (array == nullptr) continue;
        array->members = first_of<pareinfo_member>(group->members);
        trace(kTraceDetail, "%s connected UUID(%s) pareinfo\n", array->name, group->uuid);
        for (auto* member = array->members; member != nullptr; member = next_of(member, group->members)) {
            member->device->in_array = array;
            trace(kTraceDetail, "%s : master_array setted to %s\n", member->device->name, array->name);
        }
    }
}
