#include <stdio.h>

#include <string_view>

#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "telling.h"

namespace {

// The library prints the name.
int run_platform(int, char** argv) {
    char name[32];
    return LibQuorvelBin_GetPlatformStr(name, sizeof name) != nullptr ? kExitOk
                                                                      : no_answer(argv[1], nullptr, "unknown platform");
}

int run_series(int, char** argv) {
    char name[32];
    if (LibQuorvelBin_GetSeriesName(name, sizeof name) == nullptr) {
        return no_answer(argv[1], nullptr,
                         reason_of_file("/etc/nas_feature", "SERIES_NAME is not set in /etc/nas_feature"));
    }
    puts(name);
    return kExitOk;
}

int run_kernel(int, char** argv) {
    struct os_version version;
    if (LibQuorvelBin_GetOsVer(&version) != 0)
        return no_answer(argv[1], nullptr, reason_of_file("/proc/sys/kernel/osrelease", "not to be understood"));
    LibQuorvelBin_PrintOsVer(&version);
    return kExitOk;
}

// One to four numbers joined by dots, and a suffix behind "-". An unset variable must not read as an old kernel.
bool is_version(std::string_view text) {
    std::string_view numbers = quorvel::front_of(text, text.find('-'));
    size_t dots = 0;
    for (size_t i = 0; i < numbers.size(); i++) {
        if (numbers[i] >= '0' && numbers[i] <= '9') continue;
        if (numbers[i] != '.' || i == 0 || numbers[i - 1] == '.') return false;
        dots++;
    }
    return !numbers.empty() && numbers.back() != '.' && dots <= 3;
}

template <int (*Compare)(const char*)>
int run_comparison(int, char** argv) {
    if (is_version(argv[2])) return print_predicate(Compare(argv[2]));
    fprintf(stderr, "libquorvel_bin: %s: '%s' is no version, A.B.C.D[-SUFFIX]\n", argv[1], argv[2]);
    return kExitUsage;
}

int run_borel(int, char**) {
    return print_predicate(LibQuorvelBin_IsBorelPlatform());
}
int run_nisk(int, char**) {
    return print_predicate(LibQuorvelBin_IsNiskPlatform12Bay());
}
int run_pellmar(int, char**) {
    return print_predicate(LibQuorvelBin_IsPellmarPlatform12Bay());
}
int run_armada370(int, char**) {
    return print_predicate(LibQuorvelBin_IsArmada370());
}
int run_has_chip(int, char** argv) {
    return print_predicate(LibQuorvelbin_HasSomeExtentionChip(argv[2]));
}

// clang-format off
constexpr Command kCommands[] = {
    {"platform",           "",        "print the hardware platform's name",                          "0 printed, 1 unknown platform",  0, 0, run_platform},
    {"series",             "",        "print the product series",                                    "0 printed, 1 not set",           0, 0, run_series},
    {"kernel",             "",        "print the running kernel's version, A.B.C.D[-SUFFIX]",        "0 printed, 1 unreadable",        0, 0, run_kernel},
    {"kernel_newer",       "VERSION", "print 1 when the running kernel is newer than VERSION, else 0",      "0 for 1, 1 for 0, 2 no version", 1, 1, run_comparison<LibQuorvelBin_IsOsNewerThan>},
    {"kernel_newer_equal", "VERSION", "print 1 when the running kernel is VERSION or newer, else 0",        "0 for 1, 1 for 0, 2 no version", 1, 1, run_comparison<LibQuorvelBin_IsOsNewerEqual>},
    {"borel",              "",        "print 1 on the borel platform, else 0",                              "0 for 1, 1 for 0",        0, 0, run_borel},
    {"nisk",               "",        "print 1 on the nisk 12-bay platform, else 0",                        "0 for 1, 1 for 0",        0, 0, run_nisk},
    {"pellmar",            "",        "print 1 on the pellmar 12-bay platform, else 0",                     "0 for 1, 1 for 0",        0, 0, run_pellmar},
    {"armada370",          "",        "print 1 on the armada370 platform, else 0",                          "0 for 1, 1 for 0",        0, 0, run_armada370},
    {"has_chip",           "ID",      "print 1 when the PCI list names vendor and device ID (11ab7042), else 0", "0 for 1, 1 for 0",   1, 1, run_has_chip},
};
// clang-format on

}  // namespace

const std::span<const Command> kPlatformCommands = kCommands;
