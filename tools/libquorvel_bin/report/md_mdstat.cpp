// An array in /proc/mdstat:
//
//     md2 : active raid5 sdd6[3] sdc6[2](F) sdb6[4](S) sda6[0]
//           195072 blocks super 1.2 level 5, 512k chunk, algorithm 2 [4/3] [U_UU]
//           [==>..................]  recovery = 12.6% (8192/65024) finish=0.1min speed=8192K/sec
//     md3 : active (auto-read-only) raid1 sda5[0] sdb5[1]
//     md127 : inactive sdc[0](S)
//
// An array ends in front of the next line that does not begin with a blank.
#include <string.h>

#include "foundation/text.h"
#include "report/md_status.h"
#include "report/sources.h"

namespace report {

namespace {

constexpr int64_t kBlock = 1024;
constexpr char kNotTold[] = "/proc/mdstat does not tell it";

std::string_view next_word(std::string_view& line) {
    const size_t first = line.find_first_not_of(' ');
    line.remove_prefix(first == std::string_view::npos ? line.size() : first);
    return next_field(line, " ");
}

// ---- "active raid5 sdd6[3] sdc6[2](F)" ----

const char* state_of_flags(std::string_view flags) {
    if (flags.find("(F)") != std::string_view::npos) return "faulty";
    if (flags.find("(S)") != std::string_view::npos) return "spare";
    return "in_sync";
}

void take_member(ArrayFacts& array, std::string_view word) {
    std::string_view rest = word;
    const std::string_view device = next_field(rest, "[");
    int64_t role = -1;
    const bool numbered = to_number(next_field(rest, "]"), role);
    MemberFacts* member = numbered ? add(array.members) : nullptr;
    if (member == nullptr) return;
    const char* state = state_of_flags(rest);
    set(member->device, device);
    set(member->state, state);
    const bool active = strcmp(state, "in_sync") == 0;
    set_unless_negative(member->role, active ? role : -1, "a spare or failed disk");
    set_unknown(member->errors, kNotTold);
    if (active) array.active_disks.value++;
    if (strcmp(state, "faulty") == 0) array.failed_disks.value++;
    if (strcmp(state, "spare") == 0) array.spare_disks.value++;
}

void take_first_line(ArrayFacts& array, std::string_view line) {
    const std::string_view state = next_word(line);
    set(array.state, state);
    for (Number* number : {&array.active_disks, &array.spare_disks, &array.failed_disks})
        set(*number, 0);
    array.members.reason = nullptr;
    bool has_level = state != "active";  // an inactive array has none
    while (!line.empty()) {
        const std::string_view word = next_word(line);
        if (word.starts_with('(')) {
            set(array.state, word == "(read-only)" ? "readonly" : "read-auto");
        } else if (!has_level) {
            set(array.level, word);
            has_level = true;
        } else if (!word.empty()) {
            take_member(array, word);
        }
    }
}

// ---- "195072 blocks super 1.2 level 5 [4/3] [U_UU]" ----

// "[4/3]": the members that the array is made of, and those that are active.
void take_counts(ArrayFacts& array, std::string_view word) {
    word.remove_prefix(1);
    std::string_view rest = next_field(word, "]");
    int64_t all = 0, active = 0;
    if (!to_number(next_field(rest, "/"), all) || !to_number(rest, active)) return;
    set(array.raid_disks, all);
    set(array.missing_disks, all > active ? all - active : 0);
}

void take_size_line(ArrayFacts& array, std::string_view line) {
    int64_t bytes = 0;
    if (to_number(next_word(line), bytes, kBlock)) set(array.size_bytes, bytes);
    set(array.metadata, "0.90");  // what is not told is the version that md has always had
    while (!line.empty()) {
        const std::string_view word = next_word(line);
        if (word == "super") set(array.metadata, next_word(line));
        if (word.starts_with('[')) take_counts(array, word);
    }
}

// ---- "[==>....]  recovery = 12.6% (8192/65024) finish=..." ----

bool is_sync_word(std::string_view word) {
    for (std::string_view known : {"recovery", "resync", "reshape", "check", "repair"}) {
        if (word == known) return true;
    }
    return false;
}

void take_progress(ArrayFacts& array, std::string_view line) {
    const size_t open = line.find('(');
    if (open == std::string_view::npos) return;
    std::string_view counts = behind(line, open + 1);
    counts = next_field(counts, ")");
    int64_t done = 0, total = 0;
    if (!to_number(next_field(counts, "/"), done, kBlock) || !to_number(counts, total, kBlock)) return;
    set(array.sync_done_bytes, done);
    set(array.sync_total_bytes, total);
}

void take_sync_line(ArrayFacts& array, std::string_view line) {
    for (std::string_view rest = line; !rest.empty();) {
        const std::string_view word = next_word(rest);
        const std::string_view name = front_of(word, word.find('='));  // "resync=DELAYED"
        if (!is_sync_word(name)) continue;
        set(array.sync_action, name == "recovery" ? "recover" : name);
        return take_progress(array, line);
    }
}

void take_further_lines(ArrayFacts& array, std::string_view text) {
    for (bool first = true; !text.empty() && text.front() == ' '; first = false) {
        const std::string_view line = next_line(text);
        if (first) take_size_line(array, line);
        if (!first) take_sync_line(array, line);
    }
}

void set_defaults(ArrayFacts& array) {
    for (Words* words : {&array.level, &array.metadata, &array.uuid})
        set_unknown(*words, kNotTold);
    for (Number* number : {&array.raid_disks, &array.missing_disks, &array.size_bytes})
        set_unknown(*number, kNotTold);
    set(array.sync_action, "idle");
    for (Number* number : {&array.sync_done_bytes, &array.sync_total_bytes})
        set_unknown(*number, "nothing is being rebuilt or checked");
}

}  // namespace

// A level without redundancy has no counts; it misses none while it runs.
bool take_from_mdstat(ArrayFacts& array, const char* device, std::string_view mdstat) {
    while (!mdstat.empty()) {
        std::string_view line = next_line(mdstat);
        if (next_field(line, " : ") != device) continue;
        set_defaults(array);
        take_first_line(array, line);
        take_further_lines(array, mdstat);
        if (!is_known(array.raid_disks) && is_known(array.level)) {
            set(array.raid_disks, array.active_disks.value);
            set(array.missing_disks, 0);
        }
        return true;
    }
    return false;
}

}  // namespace report
