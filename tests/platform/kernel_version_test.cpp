// Releases as numbers, and their comparison with the running one.
#include "quorvel/platform.h"
#include "support/appliance.h"

namespace {

class KernelVersion : public ApplianceTest {};

// Result of taking a release apart, and how the outcome prints.
std::string taken_apart(const std::string& release) {
    struct os_version version;
    memset(&version, 0x55, sizeof version);
    const int result = LibQuorvelBin_GetOsVerFromString(&version, release.c_str());
    return std::to_string(result) + " " + printed_by([&] { LibQuorvelBin_PrintOsVer(&version); });
}

TEST_F(KernelVersion, TakesReleasesApart) {
    for (const auto& [release, result, printed] : table<3>("platform/expected/releases")) {
        errno = 0;
        EXPECT_EQ(taken_apart(release), result + " " + printed) << release;
        EXPECT_EQ(errno, result == "0" ? 0 : EINVAL) << release;
    }
    EXPECT_EQ(taken_apart(std::string(256, '1')), "-1 0.0.0.0\n");
    EXPECT_EQ(taken_apart("1-" + std::string(253, 's')), "0 1.0.0.0-" + std::string(127, 's') + "\n");
}

TEST_F(KernelVersion, ComparesWithTheRunningOne) {
    for (const auto& [running, given, newer, newer_equal] : table<4>("platform/expected/comparisons")) {
        write_file("/proc/sys/kernel/osrelease", running);
        EXPECT_EQ(LibQuorvelBin_IsOsNewerThan(given.c_str()), std::stoi(newer)) << running << given;
        EXPECT_EQ(LibQuorvelBin_IsOsNewerEqual(given.c_str()), std::stoi(newer_equal)) << running << given;
    }
    struct os_version version = {7, "kept"};
    EXPECT_EQ(std::pair(LibQuorvelBin_GetOsVer(&version), errno), std::pair(-1, ENODATA)) << "an empty file";
    EXPECT_EQ(version.version, 7U);
}

}  // namespace
