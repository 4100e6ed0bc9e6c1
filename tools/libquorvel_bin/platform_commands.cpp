#include <stdio.h>

#include "command.h"
#include "libquorvel_bin.h"

namespace {

// The library prints the name.
int run_platform(int, char**) {
    char name[32];
    return LibQuorvelBin_GetPlatformStr(name, sizeof name) != nullptr ? kExitOk : kExitNo;
}

int run_series(int, char**) {
    char name[32];
    if (LibQuorvelBin_GetSeriesName(name, sizeof name) == nullptr) return kExitNo;
    puts(name);
    return kExitOk;
}

int run_kernel(int, char**) {
    struct os_version version;
    if (LibQuorvelBin_GetOsVer(&version) != 0) return kExitNo;
    LibQuorvelBin_PrintOsVer(&version);
    return kExitOk;
}

int run_kernel_newer(int, char** argv) {
    return print_predicate(LibQuorvelBin_IsOsNewerThan(argv[2]));
}
int run_kernel_newer_equal(int, char** argv) {
    return print_predicate(LibQuorvelBin_IsOsNewerEqual(argv[2]));
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
    {"kernel_newer",       "VERSION", "print 1 when the running kernel is newer than VERSION, else 0",      "0 for 1, 1 for 0",        1, 1, run_kernel_newer},
    {"kernel_newer_equal", "VERSION", "print 1 when the running kernel is VERSION or newer, else 0",        "0 for 1, 1 for 0",        1, 1, run_kernel_newer_equal},
    {"borel",              "",        "print 1 on the borel platform, else 0",                              "0 for 1, 1 for 0",        0, 0, run_borel},
    {"nisk",               "",        "print 1 on the nisk 12-bay platform, else 0",                        "0 for 1, 1 for 0",        0, 0, run_nisk},
    {"pellmar",            "",        "print 1 on the pellmar 12-bay platform, else 0",                     "0 for 1, 1 for 0",        0, 0, run_pellmar},
    {"armada370",          "",        "print 1 on the armada370 platform, else 0",                          "0 for 1, 1 for 0",        0, 0, run_armada370},
    {"has_chip",           "ID",      "print 1 when the PCI list names vendor and device ID (11ab7042), else 0", "0 for 1, 1 for 0",   1, 1, run_has_chip},
};
// clang-format on

}  // namespace

const std::span<const Command> kPlatformCommands = kCommands;
