// Releases as numbers, and their comparison with the running one.
#include "quorvel/platform.h"
#include "support/appliance.h"

namespace {

class KernelVersion : public ApplianceTest {};

struct Release {
    std::string text;
    int result;
    const char* printed;
};

// clang-format off
const Release releases[] = {
    {"2.6.31.8", 0, "2.6.31.8\n"},
    {"3.10.0-123-x\nrest", 0, "3.10.0.0-123-x\n"},
    {"5", 0, "5.0.0.0\n"},
    {"2..6", 0, "2.6.0.0\n"},
    {"2.6.31.", 0, "2.6.31.0\n"},
    {"2.6.31..8", 0, "2.6.31.0\n"},
    {"2.6.31.8rc1", 0, "2.6.31.8\n"},
    {"--4.1-", 0, "4.1.0.0\n"},
    {"1.2.65537", 0, "1.3.1.0\n"},  // 65537 spills into the second number: 2 | 1
    {"2.", -1, "2.0.0.0\n"},
    {"2.6...-tag", -1, "2.6.0.0-tag\n"},
    {"", -1, "0.0.0.0\n"},
    {"\n5", -1, "0.0.0.0\n"},
    {"---", -1, "0.0.0.0\n"},
    {std::string(256, '1'), -1, "0.0.0.0\n"},
    {"1-" + std::string(253, 's'), 0, nullptr},
};
// clang-format on

TEST_F(KernelVersion, TakesReleasesApart) {
    for (const Release& release : releases) {
        SCOPED_TRACE(release.text);
        struct os_version version;
        memset(&version, 0x55, sizeof version);
        EXPECT_EQ(LibQuorvelBin_GetOsVerFromString(&version, release.text.c_str()), release.result);
        std::string printed = printed_by([&] { LibQuorvelBin_PrintOsVer(&version); });
        EXPECT_EQ(printed, release.printed != nullptr ? release.printed : "1.0.0.0-" + std::string(127, 's') + "\n");
    }
}

TEST_F(KernelVersion, ComparesWithTheRunningOne) {
    struct Row {
        const char *running, *given;
        int newer, newer_equal;
    };
    // clang-format off
    const Row rows[] = {
        {"2.6.31.8\n",     "2.6.31.8", 0, 1},
        {"2.6.31.8-xyz\n", "2.6.31.8", 0, 1},
        {"2.6.32\n",       "2.6.31.8", 1, 1},
        {"2.6.31\n",       "2.6.31.8", 0, 0},
        {"10.0\n",         "9.255.1",  1, 1},
        {"2.6.31\n",       "-",        1, 1},
        {"",               "0.0.0.1",  0, 0},
        {"",               "",         0, 1},
    };
    // clang-format on
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.running) + " " + row.given);
        write_file("/proc/sys/kernel/osrelease", row.running);
        EXPECT_EQ(LibQuorvelBin_IsOsNewerThan(row.given), row.newer);
        EXPECT_EQ(LibQuorvelBin_IsOsNewerEqual(row.given), row.newer_equal);
    }
    struct os_version version = {7, "kept"};
    EXPECT_EQ(LibQuorvelBin_GetOsVer(&version), -1) << "an empty file";
    EXPECT_EQ(version.version, 7U);
}

}  // namespace
