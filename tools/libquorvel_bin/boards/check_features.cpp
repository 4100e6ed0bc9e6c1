// The feature settings, and the words of /etc/tevra/diskinfo: missing, misspelt, or not what their readers take.
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "boards/findings.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

constexpr char kFeatures[] = "/etc/nas_feature";
constexpr char kDiskInfo[] = "/etc/tevra/diskinfo";

enum class Kind { kNumber, kOnOff, kQuoted, kOneOf, kDevice };

// What each setting steers, and what it may be: a number in a range, or one of the words.
struct Feature {
    const char* key;
    Kind kind;
    int least, most;
    bool needed;
    const char* words;  // with a blank in front of and behind each
    const char* steers;
};

// clang-format off
constexpr Feature kKnownFeatures[] = {
    {"SERIES_NAME",        Kind::kQuoted, 0, 0,   true,  "", "the series"},
    {"PRODUCT_SERIES",     Kind::kQuoted, 0, 0,   false, "", "the platform"},
    {"MAX_DISK_NUM",       Kind::kNumber, 1, 99,  true,  "", "the inventory of disks"},
    {"MAX_USBDISK_NUM",    Kind::kNumber, 0, 99,  true,  "", "the USB ports"},
    {"MAX_ARRAY_NUM",      Kind::kNumber, 0, 16,  true,  "", "the number of arrays"},
    {"DEVICE_NETWORK_NUM", Kind::kNumber, 1, 64,  true,  "", "the firewall and the Ethernet report"},
    {"SUPPORT_RAID",       Kind::kOnOff,  0, 0,   true,  "", "arrays"},
    {"SUPPORT_HOT_SWAP",   Kind::kOnOff,  0, 0,   false, "", "the presence of disks"},
    {"SUPPORT_LVM",        Kind::kOnOff,  0, 0,   false, "", "the spool directory"},
    {"SUPPORT_DHCPS",      Kind::kOnOff,  0, 0,   false, "", "the DHCP server"},
    {"SUPPORT_PRINTER_SERVER",     Kind::kOnOff, 0, 0, false, "", "the printer server"},
    {"SUPPORT_2STEP_INSPECTION",   Kind::kOnOff, 0, 0, false, "", "the inspection"},
    {"SUPPORT_SLIDE_POWER_SWITCH", Kind::kOnOff, 0, 0, false, "", "the power switch"},
    {"INTERNAL_SCSI_TYPE", Kind::kOneOf,  0, 0,   false, " multi-host multi-id multi-channel multi-lun ", "names of disks by rules"},
    {"USB_TREE_TYPE",      Kind::kOneOf,  0, 0,   false, " multi-roothub single-roothub single-roothub+hub borel-platform tamarack-platform armada370-platform ", "names of USB disks by rules"},
    {"DEV_BOOT",           Kind::kDevice, 0, 0,   false, "", "array_boot"},
    {"DEV_ROOTFS1",        Kind::kDevice, 0, 0,   false, "", "array_rootfs"},
    {"DEV_SWAP1",          Kind::kDevice, 0, 0,   false, "", "array_swap"},
    {"DEVICE_MD1_REAL",    Kind::kDevice, 0, 0,   false, "", "array1"},
    {"DEVICE_MD2_REAL",    Kind::kDevice, 0, 0,   false, "", "array2"},
};
// clang-format on

struct Setting {
    int line;
    const char* key;
    const char* value;
};

// The lines of a key=value file that set something.
template <typename Visit>
bool walk_settings(const char* path, Visit&& visit) {
    constexpr size_t kPiece = 511;
    Descriptor file = open_for_reading(path);
    if (!file) return false;
    LineReader reader(file.number, kPiece);
    char line[kPiece + 1];
    for (int number = 1; next_line(reader, line, sizeof line); number++) {
        char* key = getNextKey(line);
        char* equals = strchr(key, '=');
        if (key[0] == '#' || equals == nullptr) continue;
        *equals = '\0';
        remove_last_crlf(equals + 1);
        visit(Setting{number, key, equals + 1});
    }
    return true;
}

// How many characters must be changed, added or left out to make one word of another.
int distance(std::string_view one, std::string_view other) {
    constexpr size_t kMost = 40;
    int row[kMost + 1] = {};
    if (other.size() > kMost) return static_cast<int>(kMost);
    for (size_t j = 0; j <= other.size(); j++)
        row[j] = static_cast<int>(j);
    for (size_t i = 0; i < one.size(); i++) {
        int diagonal = row[0]++;
        for (size_t j = 0; j < other.size(); j++) {
            int changed = diagonal + ((one[i] | 0x20) != (other[j] | 0x20) ? 1 : 0);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row[other.size()];
}

bool is_set(const char* key) {
    char value[8] = "";
    return get_StringbyKey(kFeatures, key, value, sizeof value) != nullptr;
}

const Feature* feature_of(const char* key) {
    for (const Feature& feature : kKnownFeatures) {
        if (strcmp(feature.key, key) == 0) return &feature;
    }
    return nullptr;
}

bool is_quoted(std::string_view value) {
    return value.size() >= 2 && value.front() == '"' && value.back() == '"';
}

bool is_in_range(const Feature& feature, const char* value) {
    int number = leading_int(value);
    return is_all_digits(value) && number >= feature.least && number <= feature.most;
}

bool is_device(const char* value) {
    return starts_with(value, "md") && is_all_digits(value + 2);
}

// What a value should be, when it is not.
Text<256> demand_on(const Feature& feature, const char* value) {
    Text<256> demand;
    bool on_off = strcmp(value, "on") == 0 || strcmp(value, "off") == 0;
    bool listed = value[0] != '\0' && contains(feature.words, Text<160>(" %s ", value).c_str());
    if (feature.kind == Kind::kNumber && !is_in_range(feature, value))
        demand.append("a number from %d to %d", feature.least, feature.most);
    if (feature.kind == Kind::kOnOff && !on_off) demand.add("on or off");
    if (feature.kind == Kind::kQuoted && !is_quoted(value)) demand.add("a text in double quotes");
    if (feature.kind == Kind::kOneOf && !listed) demand.append("one of%s", feature.words);
    if (feature.kind == Kind::kDevice && !is_device(value)) demand.add("md and a number");
    while (demand.length > 0 && demand.chars[demand.length - 1] == ' ')
        demand.chars[--demand.length] = '\0';
    return demand;
}

// A known key that an unknown one is almost, and that is not set.
const Feature* feature_meant(const char* key) {
    for (const Feature& feature : kKnownFeatures) {
        if (distance(key, feature.key) <= 2 && !is_set(feature.key)) return &feature;
    }
    return nullptr;
}

void check_feature(Findings& findings, const Setting& setting) {
    const Feature* feature = feature_of(setting.key);
    if (feature == nullptr) {
        const Feature* meant = feature_meant(setting.key);
        if (meant != nullptr) {
            find(findings, Severity::kError, kFeatures, setting.line, "no reader knows the key %s; write %s",
                 setting.key, meant->key);
        }
        return;
    }
    Text<256> demand = demand_on(*feature, setting.value);
    if (demand.length > 0) {
        find(findings, Severity::kError, kFeatures, setting.line, "%s=%s, which steers %s; write %s", setting.key,
             setting.value, feature->steers, demand.c_str());
    }
}

// Readers take the first line of a key.
void check_repetition(Findings& findings, const Setting& setting) {
    int first = 0;
    walk_settings(kFeatures, [&](const Setting& other) {
        if (first == 0 && strcmp(other.key, setting.key) == 0) first = other.line;
    });
    if (first < setting.line) {
        find(findings, Severity::kWarning, kFeatures, setting.line, "%s is set in line %d, which counts; remove one",
             setting.key, first);
    }
}

bool is_almost_set(const char* key) {
    bool almost = false;
    walk_settings(kFeatures, [&](const Setting& other) {
        almost = almost || (feature_of(other.key) == nullptr && distance(other.key, key) <= 2);
    });
    return almost;
}

void check_missing(Findings& findings) {
    for (const Feature& feature : kKnownFeatures) {
        if (feature.needed && !is_set(feature.key) && !is_almost_set(feature.key)) {
            find(findings, Severity::kWarning, kFeatures, 1, "%s, which steers %s, is missing; add it", feature.key,
                 feature.steers);
        }
    }
    if (LibQuorvelBin_GetConfOnOffValInIntByKey("SUPPORT_LVM") == 1 && !is_set("MOUNT_LVM_BASE")) {
        find(findings, Severity::kError, kFeatures, 1,
             "SUPPORT_LVM is on and MOUNT_LVM_BASE missing: there is no spool directory on volumes; add it");
    }
}

// ---- Status words ----

bool is_status_word(const char* word) {
    return std::any_of(std::begin(diskinfo_tbl), std::end(diskinfo_tbl),
                       [word](const struct diskinfo_code& row) { return strcmp(row.name, word) == 0; });
}

bool is_status_key(const char* key) {
    bool known = starts_with(key, "disk") || starts_with(key, "array");
    return known && is_all_digits(key + strcspn(key, "0123456789"));
}

void check_status(Findings& findings, const Setting& setting) {
    if (is_status_key(setting.key) && !is_status_word(setting.value)) {
        find(findings, Severity::kError, kDiskInfo, setting.line,
             "%s=%s counts as unknown; write a status such as normal, off, array1 or raid5", setting.key,
             setting.value);
    }
}

}  // namespace

void check_features(Findings& findings) {
    bool there = walk_settings(kFeatures, [&findings](const Setting& setting) {
        check_feature(findings, setting);
        check_repetition(findings, setting);
    });
    if (there) check_missing(findings);
    if (!there)
        find(findings, Severity::kError, kFeatures, 0, "not readable: no model, series or number of disks is known");
    walk_settings(kDiskInfo, [&findings](const Setting& setting) { check_status(findings, setting); });
}
