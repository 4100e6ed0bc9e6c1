#include "raid/pairing.h"

#include <sstream>

#include "raid_appliance.h"

namespace {

// A case has a line of its own, then the report, then an empty line. The line names for each slot the superblock found
// on it ("-" none); then level, devices, devices present and minor of superblock a; how many of md2 (array1) and md3
// (array2) have a node; and how many trial mounts it takes. b is a mirror on md3, c has the UUID of a but other
// numbers.
TEST_F(RaidTest, GuessTellsWhatEverythingIs) {
    write_file("/etc/tevra/diskinfo", "array1=off\narray2=off\n");
    write_file("/proc/mounts", "/dev/sda1 /mnt/disk1 xfs rw 0 0\n");
    stand_in("/usr/local/sbin/mount");
    stand_in("/usr/local/sbin/umount");
    int count = 0;
    std::istringstream cases(text_of("expected/guess"));
    for (std::string line; std::getline(cases, line); count++) {
        char slots[8] = "";
        int level = 0, devices = 0, present = 0, minor = 0;
        unsigned nodes = 0, trials = 0;
        const int fields =
            sscanf(line.c_str(), "%4s %d %d %d %d %u %u", slots, &level, &devices, &present, &minor, &nodes, &trials);
        ASSERT_EQ(7, fields) << line;
        SCOPED_TRACE(line);
        std::string guess;
        while (std::getline(cases, line) && !line.empty())
            guess += line + "\n";

        for (const char* old : {"/run/mdadm", "/run/stand-in/mount", "/dev/md2", "/dev/md3"})
            remove_tree(old);
        const std::string superblocks[] = {superblock("a", level, devices, present, minor), superblock("b", 1, 2, 2, 3),
                                           superblock("a", 6, 4, 1, 2)};
        for (int i = 0; i < 4; i++) {
            if (slots[i] != '-') mdadm_shows("disk" + std::to_string(i + 1) + "_6", superblocks[slots[i] - 'a']);
        }
        for (unsigned i = 0; i < nodes; i++)
            write_file("/dev/md" + std::to_string(i + 2), "");
        driver_answers.assign(nodes, inactive);
        EXPECT_EQ(guess, helper({"diskinfo", "guess"}));
        EXPECT_EQ(trials, calls("mount").size());
    }
    EXPECT_EQ(9, count);
    EXPECT_EQ("/dev/disk4_6 /tmp/mount_test", calls("mount").back());
    EXPECT_EQ(nullptr, LibQuorvelBin_SearchPareInfo("a", INFO_KEY_MDNAME));

    model(6, 1);  // more disks than were looked at: no value, no line end
    LibQuorvelBin_SearchPareInfo("array1", INFO_KEY_ARRAYNAME)->total_devices = 2147483647;
    EXPECT_EQ("array1=raid5\ndisk1=array1\ndisk2=normal\ndisk3=normal\ndisk4=normal\ndisk5=disk6=",
              printed_by(quorvel::print_guess_report));
}

}  // namespace
