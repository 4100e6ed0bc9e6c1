#include <errno.h>
#include <sys/mount.h>

#include "raid_appliance.h"

namespace {

struct MdHelperTest : RaidTest {
    // Four disks in a running RAID5: md2, array1.
    void SetUp() override {
        RaidTest::SetUp();
        write_file("/etc/tevra/diskinfo", "array1=raid5\ndisk1=array1\ndisk2=array1\ndisk3=array1\ndisk4=array1\n");
        write_file("/dev/md2", "");
        mdadm_shows("md2", text_of("mdadm/detail-0.90-degraded"));
        for (const char* disk : {"disk1_6", "disk2_6", "disk3_6", "disk4_6"})
            mdadm_shows(disk, text_of("mdadm/examine-0.90"));
    }
    static std::string run(const std::vector<std::string>& words) {
        driver_answers.push_front(running(2, 5, 4));
        return helper(words);
    }
};

TEST_F(MdHelperTest, ReportsAreCompleteToTheByte) {
    const char signature[] =
        "\1\0\0\0\2\0\0\0\x20\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0di\x1bk2\0\0\0"
        "00:11:22:33:44:55\0\0\0array100normal\0\0\0\0\0\0\0\0\0";
    write_file("/dev/disk2", std::string(signature, 84));
    EXPECT_EQ(text_of("expected/array-report"), run({"mdinfo", "/dev/md2"}));
    EXPECT_EQ(text_of("expected/disk-report"), run({"diskinfo", "/dev/disk2"}));
    EXPECT_EQ("ARRAY         : /dev/md9\n  not exist\n", run({"mdinfo", "/dev/md9"}));
    EXPECT_EQ("LibQuorvelBin_ShowDiskInfo :   error\n", run({"diskinfo", "disk5"}));
    const struct {
        int (*show)(const char*);
        const char* name;
        int reason;
    } failures[] = {
        {LibQuorvelBin_ShowMdInfo,   nullptr, EINVAL},
        {LibQuorvelBin_ShowMdInfo,   "md9",   ENODEV},
        {LibQuorvelBin_ShowDiskInfo, nullptr, EINVAL},
        {LibQuorvelBin_ShowDiskInfo, "disk5", ENODEV},
    };
    for (const auto& [show, name, reason] : failures) {
        Capture output;
        EXPECT_EQ(-1, show(name));
        EXPECT_EQ(reason, errno) << (name != nullptr ? name : "null");
    }

    arrayinfo* array = LibQuorvelBin_SearchArrayInfo("md2", INFO_KEY_MDNAME);
    array->partition_info = {1000, 999, 1};
    array->sb.uuid[0] = '\0';
    std::string report = printed_by([] { EXPECT_EQ(0, LibQuorvelBin_ShowMdInfo("md2")); });
    EXPECT_NE(std::string::npos, report.find(" disk1 disk2 disk3 disk4\nsize total         : 1000\n")) << report;
    EXPECT_NE(std::string::npos, report.find("used parcent       : 99\n")) << report;
    LibQuorvelBin_SearchPareInfo("array1", INFO_KEY_ARRAYNAME)->array_name[0] = '\0';
    report = printed_by([] { LibQuorvelBin_ShowMdInfo("md2"); });
    EXPECT_NE(std::string::npos, report.find("raid_disks name    :Unkown\n")) << report;

    // Two groups with one md number: the array is linked to the first one made, whichever its UUID names.
    mdadm_shows("disk1_6", superblock("oth\x1br", 5, 4, 4, 2));
    mdadm_shows("md2", superblock("oth\x1br", 5, 4, 4, 2));
    remove_tree("/run/mdadm/disk2_6");
    report = run({"mdinfo", "md2"});
    EXPECT_NE(std::string::npos, report.find(" : oth?r\nraid_disks name    : disk3 disk4\n")) << report;
    report = run({"diskinfo", "disk2"});
    EXPECT_NE(std::string::npos, report.find("  : no\nin_array(sb.minor) : normal\npar_array_level    : normal\n"))
        << report;
}

TEST_F(MdHelperTest, EveryModelSizeGetsItsAnswers) {
    write_file("/proc/mounts", "/dev/md2 /mnt/array1 xfs rw 0 0\n/dev/sdd6 /mnt/disk4 xfs rw 0 0\n");
    bool mounted = true;
    for (const char* place : {"/mnt/array1", "/mnt/disk4"}) {
        make_directory(place);
        mounted = mounted && mount("tmpfs", place, "tmpfs", 0, "size=200k") == 0;
    }
    write_file("/mnt/array1/data", std::string(100 << 10, 'x'));
    write_file("/mnt/disk4/data", std::string(20 << 10, 'x'));
    remove_tree("/run/mdadm/disk3_6");
    remove_tree("/run/mdadm/disk4_6");
    for (const auto& [disks, arrays, line, capacities] : table<4>("raid/expected/model-sizes")) {
        model(std::stoi(disks), std::stoi(arrays));
        remove_tree("/run/stand-in/mdadm");
        EXPECT_EQ(line, run({"diskmode", "surplus"})) << disks;
        EXPECT_EQ(std::stoul(disks) + 1, calls("mdadm").size());
        const std::string found = run({"diskcap"});
        EXPECT_TRUE(!mounted || found == capacities) << disks << found;
    }
    stand_in("/sbin/mdadm", "cat /run/mdadm/${2##*/}; [ $2 != /dev/disk4_6 ] || : >/proc/mounts");  // meanwhile
    model(4, 1);
    EXPECT_TRUE(!mounted || run({"diskcap"}) == "0 0 0 10 ");
    umount("/mnt/array1");
    umount("/mnt/disk4");
    if (!mounted) GTEST_SKIP() << "cannot mount here: capacities were not looked at";
}

TEST_F(MdHelperTest, FreeMdNumberIsTheFirstNodeWithoutAnArray) {
    for (const char* node : {"/dev/md10", "/dev/md12", "/dev/md13", "/dev/md14", "/dev/md16"})
        write_file(node, "");
    driver_answers = {running(12, 1, 2), inactive};
    EXPECT_EQ("/dev/md13\n", run({"GetEmptyMdNameForTmp"}));
    driver_answers = {running(12, 1, 2), running(13, 1, 2), running(14, 1, 2)};
    EXPECT_EQ("", run({"GetEmptyMdNameForTmp"}));
    write_file("/dev/md11", "");
    driver_answers = {running(11, 1, 0)};
    EXPECT_EQ("/dev/md11\n", run({"GetEmptyMdNameForTmp"}));
}

TEST_F(MdHelperTest, OtherCommandsAndCountsPrintNothing) {
    EXPECT_EQ("", run({"mdinfo"}));
    EXPECT_EQ("", run({"mdinfo", "md2", "md3"}));
    EXPECT_EQ("", run({"diskmod"}));
    EXPECT_EQ("", helper({}));
    EXPECT_EQ(0, LibQuorvelBin_MdHelper(2, nullptr));
}

TEST_F(MdHelperTest, TracesTellEveryStep) {
    model(1, 1);
    write_file("/proc/mounts", "/dev/md2 /mnt/array1 xfs rw 0 0\n/dev/sda6 /mnt/disk1 xfs rw 0 0\n");
    remove_tree("/sys/class/scsi_host/host0");
    debug = 102;
    EXPECT_EQ(text_of("expected/guess-traces"), run({"diskinfo", "guess"}));
    model(4, 1);
    const std::string output = run({"diskmode"}),
                      report = printed_by([] { EXPECT_EQ(0, LibQuorvelBin_ShowDiskInfo("disk4")); });
    EXPECT_EQ(text_of("expected/diskmode-traces"), output.substr(output.find("diskmode")) + "\n");
    EXPECT_NE(std::string::npos, report.find(": array1\nARRAY : array1\nin_array(sb.minor) : array1\n")) << report;
}

}  // namespace
