// Presence, power, LVM membership and the spool directory.
#include "disk/naming_machine.h"

namespace {

class NamingPresence : public ApplianceTest {};

TEST_F(NamingPresence, ConnectedByDriverOrElseByNode) {
    write_file("/dev/disk1", "");
    EXPECT_EQ(LibQuorvelBin_IsConnectedDisk(0), 1);
    EXPECT_EQ(LibQuorvelBin_IsConnectedDisk(1), 0);
    const std::pair<const char*, int> states[] = {
        {"plugged\nx",  1},
        {"plugged",     1},
        {"plugged \n",  0},
        {"unplugged\n", 0},
        {"",            0}
    };
    for (auto [text, connected] : states) {
        write_file("/proc/quorvel/gpio/hotplug/sata0", text);
        EXPECT_EQ(LibQuorvelBin_IsConnectedDisk(0), connected) << text;
    }
    EXPECT_EQ(LibQuorvelBin_IsConnectedDisk(2147483647), 0);
}

TEST_F(NamingPresence, PowerFromTheFrontPanelTool) {
    EXPECT_EQ(LibQuorvelBin_IsPowerSupplyedDisk(0), 0) << "no tool";
    stand_in("/usr/local/sbin/frontctl", "printf 'hdd1=on\\nhdd2=off\\nhdd3=onx\\nhdd4 on\\nhdd10=off\\n'");
    for (int slot = 0; slot < 5; slot++)
        EXPECT_EQ(LibQuorvelBin_IsPowerSupplyedDisk(slot), slot == 0) << slot;
    EXPECT_EQ(calls("frontctl")[0], "-a hdd_set_power");
}

TEST_F(NamingPresence, ScsiNameOfAHost) {
    auto scsiname = [](int host) {
        char name[64] = "before";
        int result = LibQuorvelBin_GetScsinameFromDisknumber(host, name, 0);
        return std::to_string(result) + " " + name;
    };
    const std::string target = "/sys/class/scsi_host/host3/device/target3:0:0/3:0:0:0";
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(scsiname(3), "-1 before"); }), "opendir failed\n");
    make_directory(target);
    EXPECT_EQ(scsiname(3), "0 before");
    make_directory(target + "/block:" + std::string(32, 's'));
    EXPECT_EQ(scsiname(3), "0 before") << "32 characters need a size";
    remove_tree(target);
    make_directory(target + "/block:sda:b\nc");
    EXPECT_EQ(scsiname(3), "0 sda:b");
}

TEST_F(NamingPresence, VolumeGroups) {
    EXPECT_EQ(LibQuorvelBin_IsLvmVolume("md2"), 0);
    EXPECT_EQ(IsLVMDisk("array1"), 0);
    // Runs of separators count as one for the disk only.
    for (const auto& [line, volume, disk] : table<3>("disk/expected/volume-groups")) {
        write_file("/tmp/pvlist", line);
        EXPECT_EQ(LibQuorvelBin_IsLvmVolume("md2"), std::stoi(volume)) << line;
        EXPECT_EQ(IsLVMDisk("array1"), std::stoi(disk)) << line;
    }
    write_file("/tmp/pvlist", "/dev/md2" + std::string(118, 'x') + "<>a<>b\n");
    EXPECT_EQ(LibQuorvelBin_IsLvmVolume("md2"), 0) << "the separators are in the next piece of 126 characters";
}

std::string available() {
    char name[16] = {};
    int result = LibQuorvelBin_GetAvailableDiskInfo(name);
    return std::to_string(result) + " " + name;
}

TEST_F(NamingPresence, AvailableDisk) {
    EXPECT_EQ(printed_by([] { EXPECT_EQ(available(), "0 "); }), "[/etc/tevra/diskinfo] is not such file");
    write_file("/tmp/pvlist", "/dev/md2<>lvm2<>disk1\n");
    for (const auto& [text, answer] : table<2>("disk/expected/available-disks")) {
        write_file("/etc/tevra/diskinfo", text);
        EXPECT_EQ(available(), answer) << text;
    }
}

TEST_F(NamingPresence, SpoolDirectory) {
    auto spool = [](size_t size = 64) {
        char directory[80] = "before";
        char* result = LibQuorvelBin_GetSpoolDir(directory, size);
        return result == directory ? std::string(directory) : "null " + std::string(directory);
    };
    EXPECT_EQ(spool(), "null before") << "neither disks nor mount points";
    write_file("/etc/tevra/diskinfo", "array1=raid5\n");
    make_directory("/mnt/array2/spool");
    make_directory("/mnt/array1");
    EXPECT_EQ(spool(), "null before");
    make_directory("/mnt/array1/spool");
    EXPECT_EQ(spool(18), "/mnt/array1/spool");
    EXPECT_EQ(spool(17), "null before");
    remove_tree("/mnt/array1");
    make_directory("/mnt/arr/spool");
    EXPECT_EQ(spool(), "/mnt/arr/spool") << "the beginning of the disk's name is enough";

    write_file("/tmp/pvlist", "/dev/md2<>lvm2<>array1\n");
    write_file("/tmp/lvlist", "\n/dev/vg/none<>x\nplain<>x\n/dev/vg/lv1<>x\n");
    make_directory("/mnt/lvm/vg/lv1/spool");
    write_file("/etc/nas_feature", "SUPPORT_LVM=2\nMOUNT_LVM_BASE=/mnt/lvm\n");
    EXPECT_EQ(spool(), "null before") << "LVM is on for 1 and on only";
    write_file("/etc/nas_feature", "SUPPORT_LVM=on\nMOUNT_LVM_BASE=/mnt/lvm\n");
    EXPECT_EQ(spool(), "/mnt/lvm/vg/lv1/spool");
    for (const char* gone : {"/mnt/lvm", "/tmp/lvlist", "/mnt"}) {
        remove_tree(gone);
        EXPECT_EQ(spool(), "null before") << gone;
    }
    make_directory("/mnt");
    write_file("/etc/tevra/diskinfo", "disk1=standby\n");
    EXPECT_EQ(spool(), "null before") << "nothing usable";
}

}  // namespace
