// The arrays, as the kernel has them: any metadata version, any level. The names come from the model's settings.
#include <stdio.h>
#include <string.h>

#include <algorithm>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/gather.h"
#include "report/md_status.h"
#include "report/sources.h"

namespace report {

namespace {

using quorvel::Text;

constexpr char kNotRunning[] = "the array is not running";
constexpr int kMostDataArrays = 5;

struct SystemArray {
    const char* feature;
    const char* name;
};

constexpr SystemArray kSystemArrays[] = {
    {"DEV_BOOT",    "array_boot"  },
    {"DEV_ROOTFS1", "array_rootfs"},
    {"DEV_SWAP1",   "array_swap"  },
};

void gather_status(ArrayFacts& array, const FileText& status) {
    std::string_view word;
    if (find_setting(status.view(), text_of(array.name), word)) return set(array.status, word);
    set_unknown(array.status, status.reason != nullptr ? status.reason : "not in the disk status file");
}

// The md device that a feature names, when there is any trace of it: a node, a running array, or a status that tells
// of a RAID mode.
void add_named(Facts& facts, const char* feature, const char* name, const FileText& status) {
    char device[64] = "";
    if (get_StringbyKey(quorvel::files::kFeature, feature, device, sizeof device - 1) == nullptr) return;
    if (device[0] == '\0' || strchr(device, '/') != nullptr) return;
    std::string_view word;
    const bool expected = find_setting(status.view(), name, word) && word.starts_with("raid");
    if (!expected && !quorvel::path_exists(Text<128>(quorvel::files::kDevice, device).c_str())) return;
    ArrayFacts* array = add(facts.arrays);
    if (array == nullptr) return;
    set(array->name, name);
    set(array->device, device);
    gather_status(*array, status);
}

// A volume on a single disk has its device in "arrayN_dev", whose number names the feature.
void add_data_arrays(Facts& facts, const FileText& status) {
    for (int i = 1; i <= kMostDataArrays; i++) {
        const Text<32> name("array%d", i);
        std::string_view level, device;
        const bool single = find_setting(status.view(), Text<32>("array%d_dev", i).c_str(), device) && !device.empty();
        if (!single && !find_setting(status.view(), name.c_str(), level)) return;
        Text<160> feature;
        if (single) {
            feature.append("DEVICE_HDD");
            feature.add(behind(device, strlen("disk")));
            feature.add("_EDP");
        } else {
            feature.append("DEVICE_MD%d_REAL", i);
        }
        if (!feature.cut) add_named(facts, feature.c_str(), name.c_str(), status);
    }
}

ArrayFacts* find_array(Facts& facts, const char* device) {
    for (ArrayFacts& array : facts.arrays) {
        if (strcmp(text_of(array.device), device) == 0) return &array;
    }
    return nullptr;
}

void add_unnamed(Facts& facts, const char* device) {
    if (find_array(facts, device) != nullptr) return;
    ArrayFacts* array = add(facts.arrays);
    if (array == nullptr) return;
    set(array->device, device);
    set_unknown(array->name, "the model's settings do not name it");
    set_unknown(array->status, "the model's settings do not name it");
}

// Arrays that no setting names, such as those of an added disk.
void add_running(Facts& facts, std::string_view mdstat) {
    const quorvel::Directory blocks = quorvel::open_directory(quorvel::files::kBlockDevices);
    while (const struct dirent* entry = blocks ? readdir(blocks.get()) : nullptr) {
        if (quorvel::starts_with(entry->d_name, "md") && is_kernel_array(entry->d_name))
            add_unnamed(facts, entry->d_name);
    }
    while (!mdstat.empty()) {
        std::string_view line = next_line(mdstat);
        const std::string_view device = next_field(line, " : ");
        if (!device.starts_with("md") || line.empty() || device.find(' ') != std::string_view::npos) continue;
        add_unnamed(facts, Text<64>("%.*s", static_cast<int>(device.size()), device.data()).c_str());
    }
}

void set_all_unknown(ArrayFacts& array, const char* reason) {
    for (Words* words : {&array.level, &array.metadata, &array.uuid, &array.sync_action})
        set_unknown(*words, reason);
    for (Number* number : {&array.raid_disks, &array.active_disks, &array.missing_disks, &array.spare_disks,
                           &array.failed_disks, &array.size_bytes, &array.sync_done_bytes, &array.sync_total_bytes})
        set_unknown(*number, reason);
    array.members.reason = reason;
}

void gather_state(ArrayFacts& array, const FileText& mdstat) {
    set_all_unknown(array, kNotRunning);
    const char* device = text_of(array.device);
    if (take_from_sysfs(array, device) || take_from_mdstat(array, device, mdstat.view())) return;
    if (mdstat.reason == nullptr) return set(array.state, "not running");
    set_unknown(array.state, "there is no /proc/mdstat, and the kernel shows no such array");
    set_all_unknown(array, array.state.reason);
}

// The device itself, or a partition of it: "sda6" of "sda", "nvme0n1p6" of "nvme0n1".
bool is_partition_of(const char* partition, const char* device) {
    constexpr char kDigits[] = "0123456789";
    const size_t length = strlen(device);
    if (length == 0 || strncmp(partition, device, length) != 0) return false;
    const char* number = partition + length;
    if (*number == 'p' && strchr(kDigits, device[length - 1]) != nullptr) number++;
    return number[strspn(number, kDigits)] == '\0';
}

// Every disk is in the system's arrays too, and a disk used by itself in one of its own: those say nothing of its use.
bool holds_shared_data(const ArrayFacts& array) {
    if (is_known(array.name)) return !quorvel::starts_with(text_of(array.name), "array_");
    return is_known(array.raid_disks) && array.raid_disks.value > 1;
}

void name_member(Facts& facts, const ArrayFacts& array, MemberFacts& member) {
    set_unknown(member.disk, "not one of the listed disks");
    for (DiskFacts& disk : facts.disks) {
        if (!is_partition_of(text_of(member.device), text_of(disk.device))) continue;
        const Words& name = is_known(disk.name) ? disk.name : disk.device;
        set(member.disk, text_of(name));
        const bool failed = strstr(text_of(member.state), "faulty") != nullptr;
        if (holds_shared_data(array) && !failed)
            set(disk.array, is_known(array.name) ? text_of(array.name) : text_of(array.device));
    }
}

bool is_member(const ArrayFacts& array, const DiskFacts& disk) {
    return std::any_of(array.members.begin(), array.members.end(), [&disk](const MemberFacts& member) {
        return is_partition_of(text_of(member.device), text_of(disk.device));
    });
}

// Older kernels do not tell it; a member's superblock does. That of a strange disk names the array of its choice.
void find_uuid(ArrayFacts& array, const Facts& facts) {
    for (const DiskFacts& disk : facts.disks) {
        if (is_known(array.uuid) || !is_known(disk.superblock_uuid) || !is_known(disk.superblock_minor)) continue;
        if (!is_member(array, disk)) continue;
        const Text<64> device("md%d", static_cast<int>(disk.superblock_minor.value));
        if (strcmp(device.c_str(), text_of(array.device)) == 0) set(array.uuid, text_of(disk.superblock_uuid));
    }
}

}  // namespace

void gather_arrays(Facts& facts) {
    const FileText status = read_file(quorvel::files::kDiskInfo);
    const FileText mdstat = read_file("/proc/mdstat");
    facts.arrays.reason = nullptr;
    for (const SystemArray& row : kSystemArrays)
        add_named(facts, row.feature, row.name, status);
    add_data_arrays(facts, status);
    add_running(facts, mdstat.view());
    for (ArrayFacts& array : facts.arrays) {
        gather_state(array, mdstat);
        for (MemberFacts& member : array.members)
            name_member(facts, array, member);
        find_uuid(array, facts);
    }
}

}  // namespace report
