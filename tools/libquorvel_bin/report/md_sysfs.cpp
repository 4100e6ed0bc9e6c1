// An array's attributes below /sys/block/DEVICE/md.
#include <string.h>

#include "foundation/files.h"
#include "foundation/text.h"
#include "report/md_status.h"
#include "report/sources.h"

namespace report {

namespace {

using quorvel::Text;

using Path = Text<512>;

constexpr int64_t kSector = 512;

Path attribute(const char* device, const char* name) {
    return Path("/sys/block/%s/md/%s", device, name);
}

// "none", "8126464 / 976762584" in sectors, or "delayed".
void take_progress(ArrayFacts& array, const char* device) {
    char line[64];
    (void)read_attribute(attribute(device, "sync_completed").c_str(), line);
    std::string_view total = without_blanks(line);
    const std::string_view done = next_field(total, " / ");
    int64_t done_bytes = -1, total_bytes = -1;
    const bool told = to_number(done, done_bytes, kSector) && to_number(total, total_bytes, kSector);
    static constexpr char kIdle[] = "nothing is being rebuilt or checked";
    set_unless_negative(array.sync_done_bytes, told ? done_bytes : -1, kIdle);
    set_unless_negative(array.sync_total_bytes, told ? total_bytes : -1, kIdle);
}

// "in_sync", "faulty,write_error", "spare" ...
bool has_state(const char* states, std::string_view state) {
    for (std::string_view rest = states; !rest.empty();) {
        if (next_field(rest, ",") == state) return true;
    }
    return false;
}

void count_member(ArrayFacts& array, const MemberFacts& member) {
    const char* states = text_of(member.state);
    if (has_state(states, "faulty")) {
        array.failed_disks.value++;
    } else if (has_state(states, "in_sync")) {
        array.active_disks.value++;
    } else if (has_state(states, "spare")) {
        array.spare_disks.value++;
    }
}

void take_member(ArrayFacts& array, const char* device, const char* entry) {
    MemberFacts* member = add(array.members);
    if (member == nullptr) return;
    const Path folder = attribute(device, entry);
    set(member->device, entry + strlen("dev-"));
    set_from(member->state, Path("%s/state", folder.c_str()).c_str());
    set_from(member->role, Path("%s/slot", folder.c_str()).c_str());
    if (!is_known(member->role)) set_unknown(member->role, "a spare or failed disk");
    set_from(member->errors, Path("%s/errors", folder.c_str()).c_str());
    count_member(array, *member);
}

void take_members(ArrayFacts& array, const char* device) {
    for (Number* number : {&array.active_disks, &array.spare_disks, &array.failed_disks})
        set(*number, 0);
    array.members.reason = nullptr;
    const quorvel::Directory folder = quorvel::open_directory(attribute(device, "").c_str());
    while (const struct dirent* entry = folder ? readdir(folder.get()) : nullptr) {
        if (quorvel::starts_with(entry->d_name, "dev-")) take_member(array, device, entry->d_name);
    }
}

// Of such a level the kernel does not tell how many members are missing: it starts none without all of them.
bool runs_only_whole(const ArrayFacts& array) {
    const std::string_view level = text_of(array.level);
    return level == "raid0" || level == "linear";
}

}  // namespace

bool is_kernel_array(const char* device) {
    return quorvel::path_exists(attribute(device, "array_state").c_str());
}

// An array that was stopped may keep its node and its attributes: "clear".
bool take_from_sysfs(ArrayFacts& array, const char* device) {
    Words state;
    set_from(state, attribute(device, "array_state").c_str());
    if (!is_known(state) || strcmp(text_of(state), "clear") == 0) return false;
    array.state = std::move(state);
    set_from(array.level, attribute(device, "level").c_str());
    set_from(array.metadata, attribute(device, "metadata_version").c_str());
    set_from(array.uuid, attribute(device, "uuid").c_str());
    set_from(array.sync_action, attribute(device, "sync_action").c_str());
    set_from(array.raid_disks, attribute(device, "raid_disks").c_str());
    set_from(array.missing_disks, attribute(device, "degraded").c_str());
    if (!is_known(array.missing_disks) && runs_only_whole(array)) set(array.missing_disks, 0);
    set_from(array.size_bytes, Path("/sys/block/%s/size", device).c_str(), kSector);
    take_progress(array, device);
    take_members(array, device);
    return true;
}

}  // namespace report
