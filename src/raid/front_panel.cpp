// The front-panel line of two-disk and four-disk models: how the slots are grouped into single disks and arrays.
//
// Slots are put into groups, named by a letter: S single, T standby, B broken, R removed, P and Q members of array 1
// and of array 2. K stands for the array with members when only one has any.
#include <stdio.h>

#include <algorithm>
#include <span>
#include <string_view>

#include "foundation/code_table.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "quorvel/raid.h"

using namespace quorvel;

namespace {

constexpr int kMostSlots = std::size(disk_mode_tbl);
constexpr char kLetters[] = "STBRPQK";

struct Group {
    int size = 0;
    int slots[kMostSlots] = {};  // ascending, 0 behind the last
};

struct Panel {
    Group groups[sizeof kLetters - 1];  // in the order of the letters
    const char* labels[2];              // of array 1 and array 2
    int sole_array;                     // the array of group K, or 0
};

// One text of the front panel.
struct Line {
    char when[9];    // groups and their sizes, all of which must hold; other groups are not looked at
    char text[40];   // %d is a slot number, %s a label
    char shown[13];  // their values in order: the first single disk is S1, the label of array 1 L1, of array K LK
};

struct State {
    int code;
    char letter;
};

constexpr State kStates[] = {
    {0x0,   'S'},
    {0x1,   'T'},
    {0x11,  'T'},
    {0x2,   'B'},
    {0x12,  'B'},
    {0x3,   'R'},
    {0x13,  'R'},
    {0x101, 'P'},
    {0x102, 'Q'},
};

constexpr CodeName kTwoDiskLabels[] = {
    {0x1000, "RAID0"},
    {0x1001, "RAID1"},
};

constexpr CodeName kFourDiskLabels[] = {
    {0x1000, "RAID0 "},
    {0x1001, "RAID1 "},
    {0x1005, "RAID5 "},
    {0x1006, "RAID6 "},
    {0x1010, "RAID10"},
    {0x1020, "JBOD  "},
};

// clang-format off
// Tried from the top. The spacing differs from line to line: the display shows it as it is.
constexpr Line kTwoDiskLines[] = {
    {"S2",   "HD    1,2           SINGLE",        ""},
    {"S1R1", "HD  %d  : SINGLE     %d  : REMOVE", "S1R1"},
    {"S1B1", "HD  %d  : SINGLE     %d  : BROKEN", "S1B1"},
    {"P2",   "HD 1-2 : %s",                       "L1"},
    {"P1B1", "HD  %d  : %s      %d  : BROKEN",    "P1L1B1"},
    {"P1R1", "HD  %d  : %s      %d  : REMOVE",    "P1L1R1"},
};

constexpr Line kFourDiskLines[] = {
    // no array
    {"S4",       "HD 1,2,3,4         SINGLE",            ""},
    {"S3R1",     "HD %d,%d,%d: SINGLE     %d  : REMOVE", "S1S2S3R1"},
    {"S2R2",     "HD %d,%d  : SINGLE   %d,%d  : REMOVE", "S1S2R1R2"},
    {"S1R3",     "HD  %d   : SINGLE  %d,%d,%d : REMOVE", "S1R1R2R3"},
    {"S3T1",     "HD %d,%d,%d: SINGLE     %d  :STANDBY", "S1S2S3T1"},
    {"S2T2",     "HD %d,%d  : SINGLE   %d,%d  :STANDBY", "S1S2T1T2"},
    {"S1T3",     "HD  %d   : SINGLE  %d,%d,%d :STANDBY", "S1T1T2T3"},
    {"S3B1",     "HD %d,%d,%d: SINGLE     %d  : BROKEN", "S1S2S3B1"},
    {"S2B2",     "HD %d,%d  : SINGLE   %d,%d  : BROKEN", "S1S2B1B2"},
    {"S1B3",     "HD  %d   : SINGLE  %d,%d,%d : BROKEN", "S1B1B2B3"},
    // one array of all, or of three
    {"K4",       "HD 1-2-3-4          %s",               "LK"},
    {"K3S1",     "HD %d-%d-%d: %s     %d  : SINGLE",     "K1K2K3LKS1"},
    {"K3T1",     "HD %d-%d-%d: %s     %d  :STANDBY",     "K1K2K3LKT1"},
    {"K3R1",     "HD %d-%d-%d: %s     %d  : REMOVE",     "K1K2K3LKR1"},
    {"K3B1",     "HD %d-%d-%d: %s     %d  : BROKEN",     "K1K2K3LKB1"},
    // two arrays
    {"P2Q2",     "HD %d-%d : %s    %d-%d : %s",          "P1P2L1Q1Q2L2"},
    {"P2Q1",     "HD %d-%d : %s     %d  : %s",           "P1P2L1Q1L2"},
    {"P1Q1",     "HD  %d  : %s     %d  : %s",            "P1L1Q1L2"},
    {"P1Q2",     "HD  %d  : %s    %d-%d : %s",           "P1L1Q1Q2L2"},
    // one array of two
    {"K2S2",     "HD %d-%d : %s    %d,%d : SINGLE",      "K1K2LKS1S2"},
    {"K2T2",     "HD %d-%d : %s    %d,%d :STANDBY",      "K1K2LKT1T2"},
    {"K2R2",     "HD %d-%d : %s    %d,%d : REMOVE",      "K1K2LKR1R2"},
    {"K2B2",     "HD %d-%d : %s    %d,%d : BROKEN",      "K1K2LKB1B2"},
    {"K2S1T1",   "HD %d-%d : %s %dSINGLE %dSTANDBY",     "K1K2LKS1T1"},
    {"K2S1R1",   "HD %d-%d : %s %dSINGLE %dREMOVE",      "K1K2LKS1R1"},
    {"K2S1B1",   "HD %d-%d : %s %dSINGLE %dBROKEN",      "K1K2LKS1B1"},
    {"K2T1R1",   "HD %d-%d : %s %dSTANDBY %dREMOVE",     "K1K2LKT1R1"},
    {"K2T1B1",   "HD %d-%d : %s %dSTANDBY %dBROKEN",     "K1K2LKT1B1"},
    {"K2R1B1",   "HD %d-%d : %s %dREMOVE  %dBROKEN",     "K1K2LKR1B1"},
    // one array of one, and a broken disk; the first three tell of array 1 even when it has no member
    {"K1B1S2",   "HD  %d  : %s    %d,%d : SINGLE",       "P1L1S1S2"},
    {"K1B1T2",   "HD  %d  : %s    %d,%d : STANDBY",      "P1L1T1T2"},
    {"K1B1R2",   "HD  %d  : %s    %d,%d : REMOVE",       "P1L1R1R2"},
    {"K1B1S1T1", "HD  %d  : %s %dSINGLE %dSTANDBY",      "K1LKS1T1"},
    {"K1B1S1R1", "HD  %d  : %s %dSINGLE %dREMOVE",       "K1LKS1R1"},
    {"K1B1T1R1", "HD  %d  : %s %dSTANDBY %dREMOVE",      "K1LKT1R1"},
};
// clang-format on

constexpr size_t index_of(char letter) {
    return std::string_view(kLetters).find(letter);
}

// ---- What a line must be, checked while it is compiled ----

// Groups that exist, each once, of sizes that a model with so many slots can have together.
constexpr bool is_condition(const char* when, int slots) {
    for (; *when != '\0'; when += 2) {
        if (index_of(when[0]) == std::string_view::npos || when[1] < '1' || when[1] > '9') return false;
        if (std::string_view(when + 2).find(when[0]) != std::string_view::npos) return false;
        slots -= when[1] - '0';
    }
    return slots >= 0;
}

// The size that a line states for a group, 0 where it states none.
constexpr int stated_size(const Line& line, char letter) {
    for (const char* when = line.when; *when != '\0'; when += 2) {
        if (when[0] == letter) return when[1] - '0';
    }
    return 0;
}

// A line of group K may tell of array 1 whichever array has the members.
constexpr bool is_shown_member(const Line& line, const char* value) {
    const int size = std::max(stated_size(line, value[0]), value[0] == 'P' ? stated_size(line, 'K') : 0);
    return value[1] >= '1' && value[1] - '0' <= size;
}

constexpr bool is_shown_label(const Line& line, const char* value) {
    if (value[0] != 'L') return false;
    return value[1] == '1' || value[1] == '2' || (value[1] == 'K' && stated_size(line, 'K') > 0);
}

// The condition can hold, and every value has its place in the text and is of the kind that the place takes.
constexpr bool is_sound(const Line& line, int slots) {
    if (!is_condition(line.when, slots)) return false;
    const char* value = line.shown;
    for (const char* c = line.text; *c != '\0'; c++) {
        if (*c != '%') continue;
        c++;
        const bool fits = *c == 's' ? is_shown_label(line, value) : *c == 'd' && is_shown_member(line, value);
        if (!fits) return false;
        value += 2;
    }
    return *value == '\0';
}

constexpr bool are_sound(std::span<const Line> lines, int slots) {
    return std::all_of(lines.begin(), lines.end(), [slots](const Line& line) { return is_sound(line, slots); });
}

static_assert(are_sound(kTwoDiskLines, 2));
static_assert(are_sound(kFourDiskLines, 4));

// One fault each: sizes, groups, a group twice, a label, members, kinds, places without values and the other way round.
constexpr Line kFaulty[] = {
    {"S9",   "",      ""    },
    {"S3T2", "",      ""    },
    {"S",    "",      ""    },
    {"Z4",   "",      ""    },
    {"S1S1", "",      ""    },
    {"Q1",   "%s",    "L7"  },
    {"Q1",   "%s",    "LK"  },
    {"S1",   "%d",    "S2"  },
    {"S1",   "%d",    "S0"  },
    {"S1",   "%d",    "T1"  },
    {"S1",   "%s",    "S1"  },
    {"S1",   "%d",    "L1"  },
    {"S1",   "%c",    "S1"  },
    {"S1",   "%d %d", "S1"  },
    {"S1",   "%d",    "S1S1"},
};
static_assert(std::none_of(std::begin(kFaulty), std::end(kFaulty), [](const Line& line) { return is_sound(line, 4); }));

// ---- Showing ----

void add_slot(Group& group, int slot) {
    group.slots[group.size++] = slot;
}

Panel classify(int slots, std::span<const CodeName> labels) {
    Panel panel = {};
    for (int slot = 1; slot <= slots; slot++) {
        for (const State& state : kStates) {
            if (state.code == disk_mode_tbl[slot - 1].code) add_slot(panel.groups[index_of(state.letter)], slot);
        }
    }
    for (int i = 0; i < 2; i++)
        panel.labels[i] = name_of(labels, array_mode_tbl[i].code, "");

    const Group& first = panel.groups[index_of('P')];
    const Group& second = panel.groups[index_of('Q')];
    if (second.size == 0) panel.sole_array = 1;
    if (first.size == 0) panel.sole_array = 2;
    if (panel.sole_array != 0) panel.groups[index_of('K')] = panel.sole_array == 1 ? first : second;
    return panel;
}

bool holds(const Panel& panel, const char* when) {
    for (; *when != '\0'; when += 2) {
        if (panel.groups[index_of(when[0])].size != when[1] - '0') return false;
    }
    return true;
}

const char* label(const Panel& panel, char which) {
    return panel.labels[(which == 'K' ? panel.sole_array : which - '0') - 1];
}

void print_line(const Panel& panel, const Line& line) {
    const char* value = line.shown;
    for (const char* c = line.text; *c != '\0'; c++) {
        if (*c != '%') {
            putchar(*c);
            continue;
        }
        if (*++c == 's') {
            fputs(label(panel, value[1]), stdout);
        } else {
            printf("%d", panel.groups[index_of(value[0])].slots[value[1] - '1']);
        }
        value += 2;
    }
}

void print_first_match(const Panel& panel, std::span<const Line> lines) {
    for (const Line& line : lines) {
        if (holds(panel, line.when)) return print_line(panel, line);
    }
    puts("HD Unknown");
}

void trace_groups(const Panel& panel) {
    const auto size = [&panel](char letter) { return panel.groups[index_of(letter)].size; };
    for (int i = 0; i < kMostSlots; i++)
        trace(kTraceDetail, "pdiskinfo_disk[%d].status=%d\n", i, disk_mode_tbl[i].code);
    trace(kTraceDetail,
          "single_slot_num=%d\nstandby_slot_num=%d\ndegrade_slot_num=%d\nremove_slot_num=%d\n"
          "array_slot_num[0]=%d\narray_slot_num[1]=%d\n",
          size('S'), size('T'), size('B'), size('R'), size('P'), size('Q'));
}

}  // namespace

int LibQuorvelBin_PrintLcdString(void) {
    trace(kTraceDetail, "%s : Entered\n", __func__);
    const int disks = LibQuorvelBin_GetMaxDiskNum();
    if (disks != 2 && disks != 4) {
        puts("Unsupported system disk number");
        return 0;
    }
    trace(kTraceDetail, "%s : disk %d routine.\n", __func__, disks);
    if (disks == 2) {
        print_first_match(classify(disks, kTwoDiskLabels), kTwoDiskLines);
        return 0;
    }
    const Panel panel = classify(disks, kFourDiskLabels);
    trace_groups(panel);
    print_first_match(panel, kFourDiskLines);
    return 0;
}
