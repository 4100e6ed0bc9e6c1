#include "raid/pairing.h"

#include "raid_appliance.h"

namespace {

TEST_F(RaidTest, GuessTellsWhatEverythingIs) {
    write_file("/etc/tevra/diskinfo", "array1=off\narray2=off\n");
    write_file("/proc/mounts", "/dev/sda1 /mnt/disk1 xfs rw 0 0\n");
    stand_in("/usr/local/sbin/mount");
    stand_in("/usr/local/sbin/umount");
    for (const auto& row : table<8>("raid/expected/guess")) {
        const auto number = [&row](size_t field) { return std::stoi(row[field]); };
        for (const char* old : {"/run/mdadm", "/run/stand-in/mount", "/dev/md2", "/dev/md3"})
            remove_tree(old);
        const std::string superblocks[] = {superblock("a", number(1), number(2), number(3), number(4)),
                                           superblock("b", 1, 2, 2, 3), superblock("a", 6, 4, 1, 2)};
        for (size_t i = 0; i < 4; i++) {
            if (row[0][i] != '-') mdadm_shows("disk" + std::to_string(i + 1) + "_6", superblocks[row[0][i] - 'a']);
        }
        for (int i = 0; i < number(5); i++)
            write_file("/dev/md" + std::to_string(i + 2), "");
        driver_answers.assign(static_cast<size_t>(number(5)), inactive);
        EXPECT_EQ(row[7], helper({"diskinfo", "guess"})) << row[0];
        EXPECT_EQ(row[6], std::to_string(calls("mount").size())) << row[0];
    }
    EXPECT_EQ("/dev/disk4_6 /tmp/mount_test", calls("mount").back());
    EXPECT_EQ(nullptr, LibQuorvelBin_SearchPareInfo("a", INFO_KEY_MDNAME));

    model(6, 1);  // more disks than were looked at: no value, no line end
    LibQuorvelBin_SearchPareInfo("array1", INFO_KEY_ARRAYNAME)->total_devices = 2147483647;
    EXPECT_EQ("array1=raid5\ndisk1=array1\ndisk2=normal\ndisk3=normal\ndisk4=normal\ndisk5=disk6=",
              printed_by(quorvel::print_guess_report));
}

}  // namespace
