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

struct FileText {
    std::string text, dump;
};

const std::string kFirst = "HDD_INTERNAL=1,\tone,\t0:0:0:0\n";

// clang-format off
const FileText kDiskOrders[] = {
    {" \t" + kFirst,                                                 ";\n" + kFirst},
    {"HDD_INTERNAL = 1 x,,one two , 0:0:0:0 \r\n",                   ";\n" + kFirst},
    {"; " + kFirst + "#" + kFirst + "HDD_INTERNAL 1\nOTHER=1\n" + kFirst, ";\n" + kFirst},
    {"HDD_USB=2, usb, 3, -1\n",                                      ";\nHDD_USB=2,\tusb,\t3,\t-1\n"},
    {"HDD_USB=2, usb, 3",                                            ";\nHDD_USB=2,\tusb,\t3,\t0\n"},
    {"HDD_BOOT=1, boot\n" + kFirst,                                  ";\n" + kFirst},
    {"HDD_DISKNAME= bay x\nUSB_DISKNAME=port\n" + kFirst + "HDD_DISKNAME=\nHDD_USB=1,u,1,2\n",
     "HDD_DISKNAME=bay\nUSB_DISKNAME=port\n;\n" + kFirst + "HDD_USB=1,\tu,\t1,\t2\n"},
    {kFirst + "HDD_DISKNAME=late\n",                                 ";\n" + kFirst},
    // Nothing, and each kind of bad row, which spoils the good one above it.
    {"",                                                             "null"},
    {"HDD_DISKNAME=bay\n",                                           "null"},
    {kFirst + "HDD_INTERNAL=0,two,1:0:0:0\n",                        "null"},
    {kFirst + "HDD_INTERNAL=x,two,1:0:0:0\n",                        "null"},
    {kFirst + "HDD_INTERNAL=2,two\n",                                "null"},
    {kFirst + "HDD_INTERNAL=2, ,1:0:0:0\n",                          "null"},
    {kFirst + "HDD_INTERNAL=2,two, \n",                              "null"},
    {kFirst + "HDD_INTERNAL=\n",                                     "null"},
    {kFirst + "HDD_INTERNAL=2," + std::string(128, 'p') + ",1:0:0:0\n", "null"},
    {kFirst + "HDD_USB=2,usb,0,1\n",                                 "null"},
    {kFirst + "HDD_USB=2,usb\n",                                     "null"},
    {kFirst + "HDD_USB=-1,usb,1,1\n",                                "null"},
    {kFirst + "HDD_BOOT=1\n",                                        "null"},
    {kFirst + "HDD_BOOT=0,boot\n",                                   "null"},
    // A line of more than 511 characters is read in pieces.
    {"#" + std::string(510, 'x') + kFirst,                           ";\n" + kFirst},
};

const std::string kBad = "/etc/extslot.conf parse error LINE=";
const FileText kExtensions[] = {
    {"extslot1=SATA, 1, one, 0:0:0:0\n",                             ";\n" + kFirst},
    {"extslot4=SCSI, 1, one, 0:0:0:0\n",                             ";\n" + kFirst},
    {"EXTSLOT2_SATADISKNAME=ext\nEXTSLOT1_USBDISKNAME=no\nextslot2=SATA,1,one,0:0:0:0\nextslot2=USB,1,u,1,-1\nEXTSLOT2_USBDISKNAME=late\n",
     "HDD_DISKNAME=ext\n;\n" + kFirst + "HDD_USB=1,\tu,\t1,\t-1\n"},
    {"extslot1=NONE, 7, odd\nextslot1=OTHER\n",                      ";\nHDD_INTERNAL=7,\todd,\t\nHDD_INTERNAL=0,\t,\t\n"},
    {"dump_config=yes\n",                                            "null"},
    {"[1912:0014]\n",                                                "null"},
    {"extslot5=SATA,1,one,0:0:0:0\n",                                "null"},
    {"extslot0=SATA,1,one,0:0:0:0\n",                                "null"},
    {"extslot=SATA,1,one,0:0:0:0\n",                                 "null"},
    {"my_extslot1=SATA,1,one,0:0:0:0\n",                             "null"},
    {"extslot1=SATA,0,one,0:0:0:0\n",                                "null"},
    {"extslot1=SATA,1,one\n",                                        "null"},
    {"extslot1=USB,1,one,0,1\n",                                     "null"},
};
// clang-format on

TEST_F(NamingFiles, DiskOrder) {
    EXPECT_EQ(dumped(get_DiskOrderConfig()), "null");
    for (const FileText& row : kDiskOrders)
        EXPECT_EQ(disk_order(row.text), row.dump) << row.text;
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
    for (const FileText& row : kExtensions)
        EXPECT_EQ(extension_slots(row.text), row.dump) << row.text;
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
    EXPECT_EQ(printed("dump_config=yes\n" + rows + "extslot9 x=SATA, 1,2 \n"), kBad + "extslot9=SATA, 1,2 \n");
}

}  // namespace
