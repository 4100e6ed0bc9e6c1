#include <sys/stat.h>

#include "quorvel/disk.h"
#include "support/appliance.h"

extern "C" int32_t from_cmdline;

namespace {

struct Temperature : ApplianceTest {};

TEST_F(Temperature, IsTheRawValueOfAttribute194OfAPathThatMayBeExecuted) {
    write_file("/dev/sda", "");
    for (const auto& [device, mode, asks, result, printed, tool] : table<6>("disk/expected/temperatures")) {
        // The tables beside this test are smartctl's own; the NVMe report follows its form.
        stand_in("/usr/local/sbin/smartctl", "cd /source/tests/disk/smartctl && " + tool);
        chmod("/dev/sda", static_cast<mode_t>(std::stoi(mode, nullptr, 8)));
        from_cmdline = std::stoi(asks);
        Capture output;
        EXPECT_EQ(std::stoi(result), LibQuorvelBin_GetDiskTemperature(1, device.c_str())) << tool;
        EXPECT_EQ(printed, output.text()) << tool;
    }
    EXPECT_EQ(calls("smartctl"), std::vector<std::string>(8, "-d marvell -A /dev/sda"));
}

}  // namespace
