// Texts with all that a shell acts on, through the functions that put texts of others into a command line.
#include <functional>

#include "libquorvel_bin.h"
#include "support/appliance.h"

// Each tool gets the text as it is, as one word: the two blanks would be one, and /harm would be there.
TEST_F(ApplianceTest, HostileTextsStayOneWord) {
    const std::string text = "a'b\"c;>harm`>harm`$(>harm)&|<x\\*?[~#", path = "/tmp/" + text + "  d";
    const std::string partition = "/dev/s;>harm`>harm`'\"$(>harm)";
    struct Row {
        const char* tool;
        std::function<void()> run;
        std::string call;
    };
    const char* device = path.c_str();
    // clang-format off
    const Row rows[] = {
        {"/usr/local/sbin/smartctl",   [&] { (void)LibQuorvelBin_GetDiskTemperature(0, device); }, "-d marvell -A " + path},
        {"/usr/local/bin/mount",       [&] { (void)LibQuorvelBin_MountTest(device); },          path + " /tmp/mount_test"},
        {"/usr/local/bin/parted",      [&] { (void)create_partition(partition.c_str()); },      "-s " + partition + " mklabel gpt"},
        {"/usr/local/bin/nslookup",    [&] { char word[] = "dns"; char* words[] = {word, nullptr}; (void)LibQuorvelBin_IsDNSReachable(1, words); },
                                                                                                "-timeout=3 -retry=2 " + text},
        {"/usr/local/bin/mv",          [&] { (void)set_StringbyKey(device, "a", "b"); },        path + "_tmp " + path},
        {"/usr/local/bin/mv",          [&] { (void)set_StringbyKey("-t", "a", "b"); },          "./-t_tmp ./-t"},
        {"/usr/local/bin/mount",       [&] { (void)LibQuorvelBin_MountTest("-a"); },            "./-a /tmp/mount_test"},
        {"/usr/local/bin/mount",       [&] { (void)LibQuorvelBin_MountTest(""); },              " /tmp/mount_test"},
    };
    // clang-format on
    stand_in(path);  // a device that may be executed
    write_file("/etc/resolv.conf", "nameserver " + text + "\n");
    write_file("/proc/partitions", "   8        0  156290904 " + partition.substr(5) + "\n");
    for (const auto& row : rows) {
        stand_in(row.tool);
        (void)printed_by(row.run);
        const auto made = calls(row.tool);
        EXPECT_TRUE(std::find(made.begin(), made.end(), row.call) != made.end()) << row.call;
    }
    EXPECT_FALSE(exists("/harm"));
}
