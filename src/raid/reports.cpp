// The reports of one array and of one disk.
#include <inttypes.h>
#include <stdio.h>

#include <optional>
#include <span>

#include "foundation/failure.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"
#include "raid/inventory.h"
#include "raid/list.h"

using namespace quorvel;

namespace {

struct Name {
    char text[128] = "";
};

// "diskN" of a path; none of no name.
std::optional<Name> name_in(const char* path) {
    Name name;
    if (LibQuorvelBin_Basename(name.text, path, sizeof name.text) != 0) return {};
    return name;
}

void print_sizes(const partition_info& sizes) {
    printf("size total         : %" PRIu64 "\n", sizes.total_size);
    printf("size used          : %" PRIu64 "\n", sizes.used_size);
    printf("size avail         : %" PRIu64 "\n", sizes.avail_size);
    printf("used parcent       : %" PRIu64 "\n", used_percent(sizes));
}

// A text that comes from a disk, perhaps without a terminator.
void print_from_disk(std::span<const char> text) {
    print_foreign({text.data(), strnlen(text.data(), text.size())});
    putchar('\n');
}

// The members' own list is walked, which is another group's than the one looked up when two groups share an md number:
// the head of a list stands in front of its first member.
void print_members(const arrayinfo& array) {
    if (array.members == nullptr) return;
    printf("raid_disks name    :");
    if (LibQuorvelBin_SearchPareInfo(array.sb.uuid, INFO_KEY_UUID) == nullptr &&
        LibQuorvelBin_SearchPareInfo(array.name, INFO_KEY_ARRAYNAME) == nullptr) {
        puts("Unkown");
        return;
    }
    const list_links& head = *array.members->links.prev;
    for (const pareinfo_member* member = array.members; member != nullptr; member = next_of(member, head))
        printf(" %s", member->device->name);
    putchar('\n');
}

void print_basics(const diskinfo& disk) {
    puts("Basic Information");
    printf("name               : %s\n", disk.name);
    printf("scsiname           : %s\n", disk.scsiname);
    printf("status             : 0x%08x\n", static_cast<unsigned>(disk.status));
    printf("uuid               : ");
    print_from_disk(disk.sb.uuid);
    putchar('\n');
}

void print_signature(const disk_signature& sig) {
    const auto print = [](const char* label, std::span<const char> text) {
        printf("sig.%-14s : ", label);
        print_from_disk(text);
    };
    puts("Signature Information");
    printf("sig.sig_ver        : %d.%02d\n", static_cast<int>(sig.sig_ver.major), static_cast<int>(sig.sig_ver.minor));
    print("raw_device", sig.raw_device);
    print("mac_address", sig.mac_address);
    print("in_device", sig.in_device);
    print("cryptinfo", sig.cryptinfo);
    putchar('\n');
}

void print_memberships(const diskinfo& disk) {
    puts("InArray Information");
    printf("in_array(diskinfo) : %s\n", str_diskinfo_value(disk.diskinfo_status));
    printf("in_array(sb.uuid)  : %s\n", disk.in_array != nullptr ? disk.in_array->name : "no");
    const arrayinfo* by_minor = find_array_of_minor(disk.sb.minor);
    printf("in_array(sb.minor) : %s\n", by_minor != nullptr ? by_minor->name : "normal");
    if (disk.sb.level != -1) {
        printf("par_array_level    : raid%d\n", disk.sb.level);
    } else {
        puts("par_array_level    : normal");
    }
}

}  // namespace

int LibQuorvelBin_ShowMdInfo(const char* name) {
    const std::optional<Name> md_name = name_in(name);
    if (!md_name) return -1;
    const arrayinfo* array = LibQuorvelBin_SearchArrayInfo(md_name->text, INFO_KEY_MDNAME);
    if (array == nullptr) {
        printf("ARRAY         : %s\n  not exist\n", name);
        return fail(ENODEV);
    }
    puts("Raid Information");
    printf("name               : %s\n", array->name);
    printf("md_name            : %s\n", array->md_name);
    printf("level              : %s\n", str_md_level(array->level));
    printf("state              : %s\n", str_md_state(array->state));
    printf("raid_disks         : %d\n", array->raid_disks);
    printf("active_disks       : %d\n", array->active_disks);
    printf("working_disks      : %d\n", array->working_disks);
    printf("failed_disks       : %d\n", array->failed_disks);
    printf("spare_disks        : %d\n", array->spare_disks);
    printf("diskinfo_status    : %s\n", str_diskinfo_value(array->diskinfo_status));
    printf("uuid               : ");
    print_from_disk(array->sb.uuid);
    print_members(*array);
    print_sizes(array->partition_info);
    return 0;
}

int LibQuorvelBin_ShowDiskInfo(const char* name) {
    const std::optional<Name> disk_name = name_in(name);
    if (!disk_name) return -1;
    const diskinfo* disk = LibQuorvelBin_SearchDiskInfo(disk_name->text, INFO_KEY_DISKNAME);
    if (disk == nullptr) {
        printf("%s :   error\n", __func__);
        return fail(ENODEV);
    }
    print_basics(*disk);
    print_signature(disk->sig);
    print_memberships(*disk);
    print_sizes(disk->partition_info);
    return 0;
}
