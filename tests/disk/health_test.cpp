#include <sys/stat.h>

#include "quorvel/disk.h"
#include "support/appliance.h"

extern "C" int32_t from_cmdline;

namespace {

struct Temperature : ApplianceTest {};

// clang-format off
TEST_F(Temperature, IsTheRawValueOfAttribute194OfAPathThatMayBeExecuted) {
    const std::string absent = "smartctl is not exist on this platform!\n", flagless = "smartctl doesn't have a executable flag!\n";
    const struct { const char *device, *tool; mode_t mode; int command_line, result; std::string printed; } cases[] = {
        {"/dev/sda", "cat ata-194.txt", 0610, 1, 0, "38\n"},       {"/dev/sda", "cat ata-194.txt", 0100, 0, 0, ""},
        {"/dev/sda", "cat ata-194-range.txt", 0610, 1, 0, "38\n"}, {"/dev/sda", "cat ata-no-194.txt", 0610, 1, -1, ""},
        {"/dev/sda", "cat nvme.txt", 0610, 1, -1, ""},             {"/dev/sda", "echo '194 2 3 4 5 6 7 8 9 -'", 0610, 1, -1, ""},
        {"/dev/sda", "echo '194 2 3 4 5 6 7 8 9'", 0610, 1, -1, ""}, {"/dev/sda", "exit 1", 0610, 1, -1, ""},
        {"/dev/sda", "cat ata-194.txt", 0661, 1, 95, flagless},    {"/dev/sdb", "cat ata-194.txt", 0610, 1, ENOENT, absent},
    };
    write_file("/dev/sda", "");
    for (const auto& [device, tool, mode, command_line, result, printed] : cases) {
        // The tables beside this test are smartctl's own; the NVMe report follows its form.
        stand_in("/usr/local/sbin/smartctl", std::string("cd /source/tests/disk/smartctl && ") + tool);
        chmod("/dev/sda", mode);
        from_cmdline = command_line;
        EXPECT_EQ(printed, printed_by([&] { EXPECT_EQ(result, LibQuorvelBin_GetDiskTemperature(1, device)) << tool; })) << tool;
    }
    EXPECT_EQ(calls("smartctl"), std::vector<std::string>(8, "-d marvell -A /dev/sda"));
}
// clang-format on

}  // namespace
