// Array superblocks as mdadm shows them. Lines looked for, wherever they stand:
//
//     UUID : bdc8c030:d1c2a578:042ebb07:eba6680f (local to host NAME)
//     Raid Level : raid5
//     Raid Devices : 4
//     Total Devices : 3
//     Preferred Minor : 2
//
// Metadata 1.2 has no preferred minor, and in a disk's superblock no total but two lines with a UUID ("Array UUID :",
// then "Device UUID :"): as with every key the later line holds.
#include <stdio.h>

#include "foundation/appliance_files.h"
#include "foundation/numbers.h"
#include "foundation/shell.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "raid/inventory.h"

namespace quorvel {

namespace {

constexpr size_t kPiece = 1023;

// What is read of one answer, which is a page or two. A strange disk's superblock may claim thousands of millions of
// devices; mdadm prints a character for each, and works on it for hours.
constexpr size_t kMostTold = 32 << 10;

// The keys, tried from the top, and what becomes of the text behind them.
struct SuperblockKey {
    const char* key;
    void (*take)(sb_info& sb, const char* text);
};

// clang-format off
constexpr SuperblockKey kKeys[] = {
    {"UUID : ",            [](sb_info& sb, const char* text) { copy_text(sb.uuid, sizeof sb.uuid, text); }},
    {"Preferred Minor : ", [](sb_info& sb, const char* text) { sb.minor = leading_int(text); }},
    {"Raid Level : ",      [](sb_info& sb, const char* text) { sb.level = md_level_of(text); }},
    {"Raid Devices : ",    [](sb_info& sb, const char* text) { sb.raid_devices = leading_int(text); }},
    {"Total Devices : ",   [](sb_info& sb, const char* text) { sb.total_devices = leading_int(text); }},
};
// clang-format on

// Takes the first key that occurs in a line; false when none does.
[[nodiscard]] bool take_line(const char* line, sb_info& sb) {
    for (const SuperblockKey& wanted : kKeys) {
        const char* found = strstr(line, wanted.key);
        if (found == nullptr) continue;
        wanted.take(sb, found + strlen(wanted.key));
        return true;
    }
    return false;
}

[[nodiscard]] int read_superblock(const Text<kCommandSize>& command, const char* path, sb_info& sb) {
    sb.minor = sb.level = sb.raid_devices = sb.total_devices = -1;
    CommandOutput mdadm(command, kPiece);
    if (!mdadm) {
        printf("get mdadm info failed (target:%s)\n", path);
        return -1;
    }
    bool taken = false;
    for (char* line : mdadm) {
        cut_at_line_feed(line);
        taken = take_line(line, sb);
        if (mdadm.lines.taken > kMostTold) break;
    }
    return taken ? 0 : -1;
}

}  // namespace

int get_disk_superblock(const char* path, int member_partition, sb_info& sb) {
    trace(kTraceDetail, "uuid_target_device=%s_%d\n", path, member_partition);
    return read_superblock(
        Text<kCommandSize>("%s --examine %s_%d", files::kMdadmTool, ShellWord(path).c_str(), member_partition), path,
        sb);
}

}  // namespace quorvel

using namespace quorvel;

int get_md_superblock(const char* path, struct sb_info* sb) {
    if (path == nullptr || sb == nullptr) return -1;
    if (contains(path, "disk")) return get_disk_superblock(path, get_hdd_link_partno(), *sb);
    return read_superblock(Text<kCommandSize>("%s -D %s", files::kMdadmTool, ShellWord(path).c_str()), path, *sb);
}

int get_hdd_link_partno(void) {
    char link[128] = "";
    LibQuorvelBin_GetConfValInStringByKey(link, sizeof link, "DEVICE_HDD1_LINK");
    return number_after(link, "_").value_or(0);
}
