// Names by wiring rules, where the platform has no slot table.
#include "disk/naming_rules.h"

#include "disk/naming_machine.h"

namespace {

class NamingRules : public ApplianceTest {};

const char kNew[] = "2.6.31.8", kOld[] = "2.6.31.7";

void set_wiring(const std::string& internal, const std::string& usb, bool chip = false) {
    write_file("/etc/nas_feature", "INTERNAL_SCSI_TYPE=" + internal + "\nUSB_TREE_TYPE=" + usb + "\n");
    if (chip) write_file("/proc/bus/pci/devices", "0100\t11ab7042\t10\n");
}

// Where the disk recorded on a port hangs, for the armada370 wiring.
void record_disk(int port, const std::string& bus) {
    write_file("/var/tmp/devlink", "sda=/dev/usbdisk" + std::to_string(port) + "\nsdb=/dev/usb\n");
    write_file("/etc/tevra/diskinfo", "usb_disk" + std::to_string(port) + "=VEND_S3R1AL_x\n");
    write_file("/proc/bus/usb/devices", "T:  Bus=" + bus + " Lev=01\nS:  SerialNumber=S3R1AL\n");
}

struct Forward {
    const char *type, *kernel, *path, *name;
    bool chip = false;
};

// clang-format off
const Forward kInternal[] = {
    {"multi-host",    kNew, "platform/sata_mv.0/ata1/host2/target2:0:0/2:0:0:0",       "disk3"},
    {"multi-host-x",  kOld, "platform/sata_mv.0/host2/target2:0:0/2:0:0:0",            "none" },  // component 8 is sata_mv.0
    {"multi-host",    kNew, "pci0/1f.2/host2/target2:0:0",                             "disk3"},
    {"multi-host",    kNew, "pci0/1f.2/02.0/host2/target2:0:0",                        "none" },
    {"multi-host",    kOld, "pci0/1f.2/host2/target2:0:0",                             "disk3"},
    {"multi-id",      kOld, "pci0/1f.2/host2/target2:0:0",                             "disk3"},
    {"multi-id",      kNew, "pci0/1f.2/host0/x/target0:0:4/0:0:4:0",                   "disk5"},
    {"multi-id",      kNew, "pci0/1f.2/host0/x/target1:0:4/0:0:4:0",                   "none" },
    {"",              kNew, "pci0/1f.2/02.0/x/host7/target7:0:0",                      "disk8"},
    {"",              kNew, "pci0/1f.2/02.0/x/hosthosthosthosthosthosthosthost7/more", "none" },  // 33 characters
    {"",              kNew, "pci0/1f.2/02.0/x/host2147483647/more",                    "disk-2147483648"},
};
const Forward kUsb[] = {
    {"multi-roothub",      kNew, "pci0/1d.7/02.0/usb3/3-1/3-1:1.0/host4",    "usbdisk3"},
    {"",                   kOld, "pci0/02.0/usb12/3-1/3-1:1.0/host4",        "usbdisk12"},
    {"",                   kNew, "pci0/usb1/usb/us/u",                       "usbdisk0"},
    {"single-roothub",     kNew, "pci0/1d.7/02.0/usb1/x/1-3/1-3:1.0",        "usbdisk3"},
    {"single-roothub",     kNew, "pci0/1d.7/02.0/usb1",                      "usbdisk0"},
    {"single-roothub+hub", kNew, "pci0/1d.7/02.0/usb1/x/1-1/1-1.3/1-1.3:1.0", "usbdisk3"},
    {"single-roothub+hub", kNew, "pci0/1d.7/02.0/usb1/x/1-1/1-1",            "usbdisk0"},
    {"borel-platform",     kNew, "pci0/1d.7/02.0/usb2/2-1/2-1:1.0",          "usbdisk1"},
    {"borel-platform",     kNew, "pci0/1d.7/02.0/usb3/3-2/3-2:1.0",          "usbdisk2"},
    {"borel-platform",     kNew, "pci0/1d.7/02.0/usb5/5-1/5-1:1.0",          "usbdisk5"},
    {"borel-platform",     kNew, "pci0/1d.7/02.0/usb1/1-1/1-1:1.0",          "usbdisk4"},
    {"borel-platform",     kNew, "pci0/1d.7/02.0/usb1/1-2/1-2:1.0",          "usbdisk3"},
    {"borel-platform",     kNew, "pci0/1d.7/02.0/usb1/1-3/1-3:1.0",          "usbdisk4"},
    {"borel-platform",     kNew, "pci0/1d.7/02.0/usb1/1-4/1-4:1.0",          "usbdisk4", true},
    {"borel-platform",     kNew, "pci0/1d.7/02.0/usb1/5-/5-1:1.0",           "usbdisk0"},
};
// clang-format on

void expect_name(const Forward& row, bool internal) {
    SCOPED_TRACE(std::string(row.type) + " " + row.kernel + " " + row.path);
    remove_tree("/sys/block");
    remove_tree("/proc/bus");
    set_kernel(row.kernel);
    set_wiring(internal ? row.type : "", internal ? "" : row.type, row.chip);
    std::string link = std::string("devices/") + row.path;
    if (row.kernel == kNew) make_link("/sys/block/sda", "../" + link);
    if (row.kernel == kOld) make_link("/sys/block/sda/device", "../../" + link);
    EXPECT_EQ(diskname("sda"), row.name);
    EXPECT_EQ(diskname("/dev/sda"), std::string(row.name) == "none" ? "none" : std::string("/dev/") + row.name);
}

TEST_F(NamingRules, NamesInternalDisksAndUsbDisks) {
    for (const Forward& row : kInternal)
        expect_name(row, true);
    for (const Forward& row : kUsb)
        expect_name(row, false);
}

TEST_F(NamingRules, NamesArmadaDisksByTheirRecord) {
    set_wiring("", "armada370-platform");
    set_kernel(kNew);
    add_disk("sda", "pci0/usb9/9-9");
    add_disk("sdb", "pci0/usb9/9-9");
    record_disk(2, "01");
    EXPECT_EQ(diskname("sda"), "usbdisk2");
    EXPECT_EQ(diskname("sdb"), "none") << "a link too short for a number";
    record_disk(2, "10");
    EXPECT_EQ(diskname("sda"), "none") << "not attached";
    write_file("/etc/tevra/diskinfo", "usb_disk2=\n");
    EXPECT_EQ(diskname("sda"), "none") << "not recorded";
}

struct Reverse {
    const char *type, *disk, *address, *link;  // an entry of /sys/bus/scsi/devices
    bool chip = false, found = true;
};

// clang-format off
const Reverse kInternalSlots[] = {
    {"multi-host",    "disk3",  "2:0:0:0",  "host2"},
    {"multi-channel", "disk3",  "0:2:0:0",  "host2"},
    {"multi-id",      "disk3",  "0:0:2:0",  "host2"},
    {"multi-lun",     "disk3",  "0:0:0:2",  "host2"},
    {"",              "disk3x", "2:0:0:0",  "host2"},
    {"multi-host",    "disk5",  "4:0:0:0",  "host4", true},
    {"multi-host",    "disk3",  "2:0:0:0",  "usb1/host2", false, false},
    {"multi-host",    "bootdisk1", "0:0:0:0", "host0",    false, false},
};
const Reverse kPorts[] = {
    {"multi-roothub",      "usbdisk2", "host7", "usb2/2-1/2-1:1.0"},
    {"single-roothub",     "usbdisk3", "host7", "usb1/1-3/1-3:1.0"},
    {"single-roothub+hub", "usbdisk4", "host7", "usb1/1-1.4/1-1.4:1.0"},
    {"borel-platform",     "usbdisk2", "host7", "usb1/1-2/1-2:1.0", true},
    {"borel-platform",     "usbdisk2", "host7", "usb2/2-2/2-2:1.0", true},
    {"borel-platform",     "usbdisk1", "host7", "usb3/3-1/3-1:1.0"},
    {"borel-platform",     "usbdisk3", "host7", "usb1/1-4/1-4:1.0"},
    {"borel-platform",     "usbdisk4", "host7", "usb1/1-1/1-1:1.0"},
    {"borel-platform",     "usbdisk5", "host7", "usb5/5-1/5-1:1.0"},
    {"borel-platform",     "usbdisk4", "host7", "usb1/1-2/1-2:1.0", false, false},
    {"borel-platform",     "usbdisk6", "host7", "usb8/8-8/8-8:1.0"},  // no key: the first entry
    {"tamarack-platform",  "usbdisk1", "host7", "usb4/4-1/4-1:1.0"},
    {"tamarack-platform",  "usbdisk4", "host7", "usb2/2-1/2-1:1.0"},
    {"tamarack-platform",  "usbdisk5", "host7", "usb1/1-2/1-2:1.0", false, false},
    {"armada370-platform", "usbdisk1", "host7", "usb2/2-2/2-2:1.0"},
    {"armada370-platform", "usbdisk2", "host7", "usb2/2-2/2-2:1.0", false, false},
};
// clang-format on

TEST_F(NamingRules, FindsInternalDisks) {
    for (const Reverse& row : kInternalSlots) {
        for (const char* kernel : {kOld, kNew}) {
            SCOPED_TRACE(std::string(row.type) + " " + row.disk + " " + row.link + " " + kernel);
            SetUp();
            set_kernel(kernel);
            set_wiring(row.type, "", row.chip);
            std::string scsi = std::string("/sys/devices/") + row.link + "/" + row.address;
            make_link(std::string("/sys/bus/scsi/devices/") + row.address, "../../.." + scsi.substr(4));
            make_link(scsi + "/block:sdk", "../../../block/sdk");
            make_directory(scsi + "/block/sdn");
            EXPECT_EQ(devname(std::string("/dev/") + row.disk),
                      row.found ? (kernel == kOld ? "/dev/sdk" : "/dev/sdn") : "none");
        }
    }
}

TEST_F(NamingRules, FindsUsbDisks) {
    for (const Reverse& row : kPorts) {
        for (const char* kernel : {kOld, kNew}) {
            SCOPED_TRACE(std::string(row.type) + " " + row.disk + " " + row.link + " " + kernel);
            SetUp();
            set_kernel(kernel);
            set_wiring("", row.type, row.chip);
            record_disk(1, "02");
            // The host is component 14 of the path for ports 1, 2 and 5, and 15 for ports 3 and 4.
            bool deeper = std::string("34").find(row.disk[7]) != std::string::npos;
            std::string host =
                std::string("devices/pci0/1d.7/") + (deeper ? "02.0/" : "") + row.link + "/" + row.address;
            make_link(std::string("/sys/bus/scsi/devices/") + row.address, "../../../" + host);
            std::string device = "/sys/" + host;
            if (kernel == kOld) make_link(device + "/block:sdk", "../../block/sdk");
            if (kernel == kNew)
                make_directory(device + (row.disk[7] == '6' ? "" : "/target7:0:0/7:0:0:0") + "/block/sdk");
            EXPECT_EQ(devname(row.disk), row.found ? "sdk" : "none");
        }
    }
}

// A borel board has a table, so these rules only show when asked directly.
TEST_F(NamingRules, ExtensionChipOfABorelBoard) {
    set_platform("borel");
    set_kernel(kOld);
    set_wiring("multi-host", "", true);
    const char* word = nullptr;
    int number = 0;
    std::string path = "/sys/block/../devices/pci0/02.0/03.0/host4/target4:0:0";
    ASSERT_TRUE(quorvel::name_by_rules("sda", {path, path}, true, word, number));
    EXPECT_EQ(number, 3) << "the chip's ports count downwards";
    path = "/sys/block/../devices/pci0/02.0/host4/target4:0:0";
    ASSERT_TRUE(quorvel::name_by_rules("sda", {path, path}, true, word, number));
    EXPECT_EQ(number, 5);

    make_link("/sys/bus/scsi/devices/6:0:0:0", "../../../devices/six");
    make_link("/sys/bus/scsi/devices/3:0:0:0", "../../../devices/three");
    make_link("/sys/devices/six/block:sdf", "../../block/sdf");
    make_link("/sys/devices/three/block:sdc", "../../block/sdc");
    char device[256] = "";
    EXPECT_TRUE(quorvel::device_by_rules("disk5", device));
    EXPECT_STREQ(device, "sdf") << "from the fifth slot on, two hosts are skipped";
    EXPECT_TRUE(quorvel::device_by_rules("disk4", device));
    EXPECT_STREQ(device, "sdc");
}

struct BusText {
    const char* text;
    int bus;
};

// clang-format off
const BusText kBusTexts[] = {
    {"T:  Bus=01 Lev=00\nS:  SerialNumber=OTHER\n\nT:  Bus=03 Lev=01\nS:  SerialNumber=ABC123\nT:  Bus=04\n", 3},
    {"T:  Bus=12 Lev=00\nS:  SerialNumber=ABC123\n",                          2},
    {"T:  Bus=10 Lev=00\nS:  SerialNumber=ABC123\n",                         -1},
    {"T:  Bus=02\nS:  Product=x\nS:  SerialNumber=ABC other text\n",          2},
    {"T:  Bus=02\nS:  SerialNumber=\n",                                      -1},
    {"T:  Bus=02\nS:  SerialNumber=ABC124\n",                                -1},
    {"T:  Bus=02\nS:  SerialNumber=ABC124\nT:  Bus=05\n",                     5},
    {"T:  Bus\nS:  SerialNumber=ABC123\n",                                   -1},
    {"T:  Bus=\nS:  SerialNumber=ABC123",                                    -1},
    {"T:  Bus=0",                                                            -1},
    {"S:  SerialNumber=ABC123\nT:  Bus=05\n",                                -1},
    {"",                                                                     -1},
};
// clang-format on

TEST_F(NamingRules, BusOfASerialNumber) {
    EXPECT_EQ(get_bus_number_from_udevid("ABC123"), -1);
    for (const BusText& row : kBusTexts) {
        write_file("/proc/bus/usb/devices", row.text);
        EXPECT_EQ(get_bus_number_from_udevid("usb-VENDOR_ABC123-0:0"), row.bus) << row.text;
    }
    // Of a serial number 31 characters count.
    write_file("/proc/bus/usb/devices", "T:  Bus=02\nS:  SerialNumber=" + std::string(40, 'A') + "\n");
    EXPECT_EQ(get_bus_number_from_udevid(std::string(31, 'A').c_str()), 2);
    debug = 10;
    write_file("/proc/bus/usb/devices", "T:  Bus=10 x\nS:  SerialNumber=A\n");
    std::string traces = printed_by([] { get_bus_number_from_udevid("B"); });
    for (size_t at = 0; (at = traces.find("[get_bus_number_from_udevid]", at)) != std::string::npos;)
        traces.erase(at, 28);
    EXPECT_EQ(traces,
              ">line [T:  Bus=10 x\n][-1] \n>p_bus = 0 x\n\n>p_bus = 0 contiune\n>bus = [-1] \n"
              ">line [S:  SerialNumber=A\n][-1] \n>p_seri = return break\n>serial = [A] \n"
              ">udev_id[B] = serial[A] \n>serial NG. initialize bus numberk\n>bus [-1]\n");
}

}  // namespace
