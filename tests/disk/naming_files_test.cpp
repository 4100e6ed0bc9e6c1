// The two slot files: what they give, what spoils them, and their dumps.
#include "disk/naming_machine.h"

namespace {

class NamingFiles : public ApplianceTest {};

// A set in the syntax of /etc/diskpath.conf, "null" for none; the set is released.
std::string dumped(struct disk_path* set) {
    if (set == nullptr) return "null";
    std::string text = printed_by([set] { disk_path_dump(set); });
    disk_path_free(set);
    return text;
}

std::string disk_order(const std::string& text) {
    write_file("/etc/diskpath.conf", text);
    return dumped(get_DiskOrderConfig());
}

std::string extension_slots(const std::string& text) {
    write_file("/etc/extslot.conf", text);
    return dumped(get_ExtSlotConfig());
}

const std::string kFirst = "HDD_INTERNAL=1,\tone,\t0:0:0:0\n";

TEST_F(NamingFiles, DiskOrder) {
    EXPECT_EQ(dumped(get_DiskOrderConfig()), "null");
    for (const auto& [text, dump] : table<2>("disk/expected/disk-orders"))
        EXPECT_EQ(disk_order(text), dump) << text;
    EXPECT_EQ(disk_order(kFirst + "HDD_INTERNAL=2," + std::string(128, 'p') + ",1:0:0:0\n"), "null");
    // A line of more than 511 characters is read in pieces.
    EXPECT_EQ(disk_order("#" + std::string(510, 'x') + kFirst), ";\n" + kFirst);
}

TEST_F(NamingFiles, SetInForceComesFromTheFileFirst) {
    EXPECT_EQ(LibQuorvelBin_GetPlatformDiskSet(), nullptr);
    write_file("/etc/nas_feature", "PRODUCT_SERIES=\"KT720\"\n");
    EXPECT_EQ(LibQuorvelBin_GetPlatformDiskSet(), nullptr);
    EXPECT_EQ(printed_by([] { EXPECT_EQ(LibQuorvelBin_DumpDiskPathConfig(), 0); }), "");
    set_platform("borel");
    write_file("/etc/diskpath.conf", "HDD_DISKNAME=bay\n");
    EXPECT_EQ(LibQuorvelBin_GetPlatformDiskSet(), &borel_disk_set[0]);
    write_file("/etc/diskpath.conf", "HDD_BOOT=1,boot\n" + kFirst);
    const struct disk_path* set = LibQuorvelBin_GetPlatformDiskSet();
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set[0].type, DISK_PATH_BOOT);
    EXPECT_EQ(set[0].usb_port1, 0) << "rows of a file begin as zeros";
    EXPECT_EQ(set[2].type, DISK_PATH_END);
    EXPECT_EQ(set[2].slot, 0);
    EXPECT_EQ(set[2].usb_port2, -1);
    disk_path_free(set);
    disk_path_free(nullptr);
    disk_path_dump(nullptr);
}

TEST_F(NamingFiles, ExtensionSlots) {
    EXPECT_EQ(dumped(get_ExtSlotConfig()), "null");
    for (const auto& [text, dump] : table<2>("disk/expected/extension-slots"))
        EXPECT_EQ(extension_slots(text), dump) << text;
}

TEST_F(NamingFiles, SectionsFollowTheCard) {
    const std::string file =
        "extslot1=SATA,1,any,a\n[1912:0015]\nextslot1=SATA,2,newer,a\n[1033:0194]\nextslot1=SATA,3,older,a\n[1033:x\n";
    auto paths = [&] { return extension_slots(file); };
    const std::string any = ";\nHDD_INTERNAL=1,\tany,\ta\n", newer = "HDD_INTERNAL=2,\tnewer,\ta\n",
                      older = "HDD_INTERNAL=3,\tolder,\ta\n";
    EXPECT_EQ(paths(), any + newer + older) << "no PCI list";
    write_file("/proc/bus/pci/devices", "0100\t10330195\t10\n0200\t1912\n");
    EXPECT_EQ(paths(), any + newer + older) << "no known card";
    write_file("/proc/bus/pci/devices", "0100\t10330194\t10\n0200\t19120015\t10\n0300\t8086");
    EXPECT_EQ(paths(), any + newer) << "the last known card counts";
    write_file("/proc/bus/pci/devices", "0100\t19120014\t10\n");
    EXPECT_EQ(paths(), any);
}

TEST_F(NamingFiles, ExtensionDumpAndErrors) {
    auto printed = [](const std::string& text) {
        write_file("/etc/extslot.conf", text);
        return printed_by([] { disk_path_free(get_ExtSlotConfig()); });
    };
    const std::string rows =
        "EXTSLOT1_SATADISKNAME=s\nEXTSLOT2_USBDISKNAME=u\nextslot1=SATA,1,one,a\nextslot2=USB,2,two,3,-1\nextslot3=odd,"
        "4,x\n";
    EXPECT_EQ(printed("dump_config=yes \n" + rows), "") << "yes and nothing else";
    EXPECT_EQ(printed(rows + "dump_config=yes\r\n"),
              ";/etc/extslot.conf\nEXTSLOT1_SATADISKNAME=s\nEXTSLOT2_USBDISKNAME=u\n;\nextslot1=SATA,\t1,\tone,\ta\n"
              "extslot2=USB,\t2,\ttwo\t,3\t-1\nextslot3=SATA,\t4,\tx,\t\n");
    EXPECT_EQ(printed("extslot9=SATA\ndump_config=yes\n"), "");
    EXPECT_EQ(printed("dump_config=yes\n" + rows + "extslot9 x=SATA, 1,2 \n"),
              "/etc/extslot.conf parse error LINE=extslot9=SATA, 1,2 \n");
}

}  // namespace
