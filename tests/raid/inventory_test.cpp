#include <errno.h>

#include <array>

#include "raid/list.h"
#include "raid_appliance.h"

// Stands in front of the C library's: the md driver is a script. Nothing else is asked of it here.
extern "C" int scripted_ioctl(int, unsigned long request, mdu_array_info_t* info) __asm__(IOCTL_SYMBOL);
int scripted_ioctl(int, unsigned long request, mdu_array_info_t* info) {
    EXPECT_EQ(0x80480911, request);
    EXPECT_FALSE(driver_answers.empty());
    *info = driver_answers.empty() ? inactive : driver_answers.front();
    if (!driver_answers.empty()) driver_answers.pop_front();
    errno = ENODEV;
    return info->md_minor < 0 ? -1 : 0;
}

// Records of an earlier start stay allocated: that is part of the interface.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:LibQuorvelBin_Init\n";
}

namespace {

using Lines = std::vector<std::string>;

TEST_F(RaidTest, StatusIsTheWordOfTheFirstLineThatStartsWithTheName) {
    EXPECT_EQ(0xffff, get_diskinfo_status("disk1"));
    for (const auto& [text, status] : table<2>("raid/expected/status-words")) {
        write_file("/etc/tevra/diskinfo", text);
        EXPECT_EQ(std::stoi(status, nullptr, 16), get_diskinfo_status("disk1")) << text;
    }
    std::ostringstream words;
    for (const diskinfo_code& row : diskinfo_tbl)
        words << std::hex << row.code << row.name << " ";
    EXPECT_EQ(
        "0normal 1standby 2degrade 3remove 11standby_removed 12degrade_removed 13remove_removed 101array1 102array2 "
        "fffoff 1000raid0 1001raid1 1005raid5 1006raid6 1010raid10 1020jbod ffffunkown ",
        words.str());
    EXPECT_STREQ("unkown", str_diskinfo_value(0x4));
    EXPECT_STREQ("Unkown", str_md_level(10));
    EXPECT_STREQ("write_mostly", str_md_state(9));
}

TEST_F(RaidTest, ListsAreLinkedBothWays) {
    list_links head = {&head, &head}, first, second;
    list_add(&first, &head);
    list_add(&second, &head);
    EXPECT_TRUE(head.next == &second && second.next == &first && first.next == &head);
    EXPECT_TRUE(head.prev == &first && first.prev == &second && second.prev == &head);
}

TEST_F(RaidTest, DataArraysFollowTheStatusFile) {
    const Marks marks = {
        {"{7}", std::string(112, '7')}
    };
    model(2, 2);
    for (const auto& [text, expected] : table<2>("raid/expected/data-arrays")) {
        const bool again = text[0] == '+';
        if (!again) memset(md_trans_tbl, 0, sizeof md_trans_tbl);
        write_file("/etc/tevra/diskinfo", filled(text.substr(again), marks));
        LibQuorvelBin_InitMdInfo();
        std::string found;
        for (int i = 3; md_trans_tbl[i].feature_name[0] != '\0'; i++)
            found +=
                (i > 3 ? " " : "") + std::string(md_trans_tbl[i].feature_name + 7) + ":" + md_trans_tbl[i].array_name;
        EXPECT_EQ(filled(expected, marks), found) << text;
    }
    LibQuorvelBin_SetMdTransTbl(16, "x", "x");
    LibQuorvelBin_SetMdTransTbl(-1, "x", "x");
}

TEST_F(RaidTest, ArraysAreDevicesThatOpen) {
    model(4, 2, "DEV_BOOT=md0\nDEV_ROOTFS1=md1\nDEV_SWAP1=md10\n");
    for (const char* node : {"/dev/md0", "/dev/md10", "/dev/md2", "/dev/md3"})
        write_file(node, "");
    write_file("/etc/tevra/diskinfo", "array1=raid5\narray2=raid1\n");
    write_file("/proc/mounts", "/dev/md2 /mnt/array1 xfs rw 0 0\n");
    make_directory("/mnt/array1");
    mdadm_shows("md2", superblock("a", 5, 4, 3, 2));
    driver_answers = {running(0, 1, 4), inactive, running(2, 5, 4, 1), running(3, 1, 0)};
    EXPECT_EQ("", printed_by(LibQuorvelBin_InitMdInfo));
    EXPECT_EQ((Lines{"-D /dev/md0", "-D /dev/md2"}), calls("mdadm"));
    EXPECT_EQ(
        "array2 4097 -1 -1 -1 -1 -1 -1 -1 -1 -1 md3 \narray1 4101 9 2 5 4 1 3 3 1 0 md2 mounted a\n"
        "array_swap 65535 -1 -1 -1 -1 -1 -1 -1 -1 -1 md10 \narray_boot 65535 9 0 1 4 1 4 4 0 0 md0 \n",
        text_of<arrayinfo>(arrayinfo_list, [](const arrayinfo& a) {
            return a.name + text_of({a.diskinfo_status, a.major, a.minor, a.level, a.raid_disks, a.state}) +
                   text_of({a.active_disks, a.working_disks, a.failed_disks, a.spare_disks}) + " " + a.md_name +
                   (a.partition_info.total_size != 0 ? " mounted " : " ") + a.sb.uuid;
        }));
    EXPECT_STREQ("array2", LibQuorvelBin_SearchArrayInfo("md3", INFO_KEY_MDNAME)->name);
    EXPECT_STREQ("md10", LibQuorvelBin_SearchArrayInfo("array_swap", INFO_KEY_ARRAYNAME)->md_name);
    EXPECT_EQ(nullptr, LibQuorvelBin_SearchArrayInfo("array_swap", INFO_KEY_DISKNAME));
    EXPECT_STREQ("array1", LibQuorvelBin_SearchArrayInfo("a", INFO_KEY_UUID)->name);
}

TEST_F(RaidTest, SuperblocksAreReadFromWhateverFormMdadmHas) {
    const Marks marks = {
        {"{u}", std::string(127,     'u')},
        {"{.}", std::string(1 << 20, '.')}
    };
    for (const auto& [device, text, expected] : table<3>("raid/expected/superblocks")) {
        mdadm_shows(device + (device[0] == 'd' ? "_6" : ""),
                    text[0] == '<' ? text_of(text.substr(1)) : filled(text, marks));
        sb_info sb = {"old", 7, 7, 7, 7};
        const int result = get_md_superblock(("/dev/" + device).c_str(), &sb);
        EXPECT_EQ(" " + filled(expected, marks),
                  text_of({result, sb.minor, sb.level, sb.raid_devices, sb.total_devices}) + " " + sb.uuid)
            << text;
    }
    for (const auto& [link, number] : {
             std::pair{"\"hd_12_3\"", 12},
             {"disk1",       0 },
             {"disk1_x",     0 }
    }) {
        write_file("/etc/nas_feature", std::string("DEVICE_HDD1_LINK=") + link + "\n");
        EXPECT_EQ(number, get_hdd_link_partno()) << link;
    }
}

TEST_F(RaidTest, DisksAreAllSlotsPresentOrNot) {
    model(4, 2, "SUPPORT_HOT_SWAP=on\n");
    write_file("/proc/quorvel/gpio/hotplug/sata0", "plugged\n");
    write_file("/proc/quorvel/gpio/hotplug/sata1", "unplugged\n");
    remove_tree("/dev/disk2");
    remove_tree("/sys/class/scsi_host/host2");
    write_file("/etc/tevra/diskinfo", "disk1=array1\ndisk3=degrade_removed\n");
    write_file("/proc/mounts", "/dev/sdd1 /mnt/disk4 xfs rw 0 0\n");
    make_directory("/mnt/disk4");
    mdadm_shows("disk1_6", superblock("a", 5, 4, 4, 2));
    from_cmdline = 1;
    EXPECT_EQ("Err: write file open fail.(/dev/disk2)\nopendir failed\n", printed_by(LibQuorvelBin_InitDiskInfo));
    EXPECT_EQ(1, from_cmdline);
    EXPECT_EQ(4U, calls("mdadm").size());
    EXPECT_EQ("--examine /dev/disk4_6", calls("mdadm").back());
    EXPECT_EQ(Lines(4, "-a hdd_set_power"), calls("frontctl"));
    EXPECT_EQ("disk4 29 65535 sdd mounted \ndisk3 9 18  \ndisk2 4 65535 sdb \ndisk1 15 257 sda a\n",
              text_of<diskinfo>(diskinfo_list, [](const diskinfo& disk) {
                  return disk.name + text_of({disk.status, disk.diskinfo_status}) + " " + disk.scsiname +
                         (disk.partition_info.total_size != 0 ? " mounted " : " ") + disk.sb.uuid;
              }));
    EXPECT_STREQ("disk3", LibQuorvelBin_SearchDiskInfo("disk3", INFO_KEY_DISKNAME)->name);
    EXPECT_STREQ("disk1", LibQuorvelBin_SearchDiskInfo("a", INFO_KEY_UUID)->name);
    EXPECT_TRUE(LibQuorvelBin_SearchDiskInfo("disk1", INFO_KEY_ARRAYNAME) == nullptr && errno == EINVAL);
    EXPECT_TRUE(LibQuorvelBin_SearchDiskInfo("disk5", INFO_KEY_DISKNAME) == nullptr && errno == ENODATA);

    write_file("/etc/nas_feature", "MAX_DISK_NUM=1\n");
    EXPECT_EQ("wrong feature name\n", printed_by(LibQuorvelBin_InitDiskInfo));
}

}  // namespace
