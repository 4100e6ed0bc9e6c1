// Names by wiring rules, where the platform has no slot table.
#include "disk/naming_rules.h"

#include "disk/device_rules.h"
#include "disk/naming_machine.h"

namespace {

class NamingRules : public ApplianceTest {};

const char kNew[] = "2.6.31.8", kOld[] = "2.6.31.7";

void set_machine(const std::string& kind, const std::string& wiring, const std::string& chip, const char* kernel) {
    set_kernel(kernel);
    write_file("/etc/nas_feature", (kind == "usb" ? "USB_TREE_TYPE=" : "INTERNAL_SCSI_TYPE=") + wiring + "\n");
    if (!chip.empty()) write_file("/proc/bus/pci/devices", "0100\t11ab7042\t10\n");
}

// Where the disk recorded on a port hangs, for the armada370 wiring.
void record_disk(int port, const std::string& bus) {
    write_file("/var/tmp/devlink", "sda=/dev/usbdisk" + std::to_string(port) + "\nsdb=/dev/usb\n");
    write_file("/etc/tevra/diskinfo", "usb_disk" + std::to_string(port) + "=VEND_S3R1AL_x\n");
    write_file("/proc/bus/usb/devices", "T:  Bus=" + bus + " Lev=01\nS:  SerialNumber=S3R1AL\n");
}

TEST_F(NamingRules, NamesInternalDisksAndUsbDisks) {
    for (const auto& [kind, wiring, chip, layout, place, name] : table<6>("disk/expected/names-by-wiring")) {
        SCOPED_TRACE(kind + " " + wiring + " " + layout + " " + place);
        SetUp();
        set_machine(kind, wiring, chip, layout == "new" ? kNew : kOld);
        if (layout == "new") make_link("/sys/block/sda", "../devices/" + place);
        if (layout == "old") make_link("/sys/block/sda/device", "../../devices/" + place);
        EXPECT_EQ(diskname("sda"), name);
        EXPECT_EQ(diskname("/dev/sda"), name == "none" ? "none" : "/dev/" + name);
    }
}

TEST_F(NamingRules, NamesArmadaDisksByTheirRecord) {
    set_machine("usb", "armada370-platform", "", kNew);
    add_disk("sda", "pci0/usb9/9-9");
    add_disk("sdb", "pci0/usb9/9-9");
    record_disk(2, "01");
    EXPECT_EQ(diskname("sda"), "usbdisk2");
    EXPECT_EQ(diskname("sdb"), "none") << "a link too short for a number";
    debug = 10;
    EXPECT_NE(printed_by([] { devname("usbdisk02x"); }).find(">p = /dev/usbdisk[02x] \n"), std::string::npos);
    debug = 0;
    rename("/var/tmp/devlink", "/var/tmp/others");
    make_link("/var/tmp/devlink", "others");
    EXPECT_EQ(diskname("sda"), "none") << "a link that anybody can set";
    remove_tree("/var/tmp/devlink");
    record_disk(2, "01");
    write_file("/etc/tevra/diskinfo", "usb_disk2=L\n");
    write_file("/proc/bus/usb/devices", "T:  Bus=01\nS:  SerialNumber=L\n");
    EXPECT_EQ(diskname("sda"), "usbdisk2") << "an identity of one character";
    record_disk(2, "10");
    EXPECT_EQ(diskname("sda"), "none") << "not attached";
    write_file("/etc/tevra/diskinfo", "usb_disk2=\n");
    EXPECT_EQ(diskname("sda"), "none") << "not recorded";
}

TEST_F(NamingRules, FindsInternalDisksAndUsbDisks) {
    for (const auto& [kind, wiring, chip, disk, entry, link, found] : table<7>("disk/expected/devices-by-wiring")) {
        for (const char* kernel : {kOld, kNew}) {
            SCOPED_TRACE(wiring + " " + disk + " " + link + " " + kernel);
            SetUp();
            set_machine(kind, wiring, chip, kernel);
            std::string host = link + "/" + entry, below;
            if (kind == "usb") {
                record_disk(1, "02");
                // The host is component 14 of the path for ports 1, 2 and 5, and 15 for ports 3 and 4.
                const bool deeper = disk[7] == '3' || disk[7] == '4';
                host = std::string("pci0/1d.7/") + (deeper ? "02.0/" : "") + host;
                if (disk[7] != '6') below = "/target7:0:0/7:0:0:0";
            }
            make_link("/sys/bus/scsi/devices/" + entry, "../../../devices/" + host);
            if (kernel == kOld || below.empty()) make_link("/sys/devices/" + host + "/block:sdk", "../block/sdk");
            if (kernel == kNew) make_directory("/sys/devices/" + host + below + "/block/sdn");
            const std::string prefix = kind == "usb" ? "" : "/dev/";
            EXPECT_EQ(devname(prefix + disk), found == "none" ? "none" : prefix + (kernel == kOld ? "sdk" : "sdn"));
        }
    }
}

// A borel board has a table, so these rules only show when asked directly.
TEST_F(NamingRules, ExtensionChipOfABorelBoard) {
    set_platform("borel");
    set_machine("internal", "multi-host", "chip", kOld);
    const auto slot = [](const std::string& place) {
        const std::string path = "/sys/block/../devices/pci0/02.0/" + place;
        const auto named = quorvel::name_by_rules(quorvel::read_wiring(), "sda", {path, path}, true);
        return named ? named->number : -1;
    };
    EXPECT_EQ(slot("03.0/host4/target4:0:0"), 3) << "the chip's ports count downwards";
    EXPECT_EQ(slot("host4/target4:0:0"), 5);

    make_link("/sys/bus/scsi/devices/6:0:0:0", "../../../devices/six");
    make_link("/sys/bus/scsi/devices/3:0:0:0", "../../../devices/three");
    make_link("/sys/devices/six/block:sdf", "../../block/sdf");
    make_link("/sys/devices/three/block:sdc", "../../block/sdc");
    const auto device = [](const char* disk) {
        const auto found = quorvel::device_by_rules(disk);
        return std::string(found ? found->c_str() : "none");
    };
    EXPECT_EQ(device("disk5"), "sdf") << "from the fifth slot on, two hosts are skipped";
    EXPECT_EQ(device("disk4"), "sdc");
    remove_tree("/sys/devices/three/block:sdc");
    EXPECT_EQ(device("disk4"), "none") << "a host without a disk";
}

TEST_F(NamingRules, BusOfASerialNumber) {
    EXPECT_EQ(get_bus_number_from_udevid("ABC123"), -1);
    for (const auto& [text, bus] : table<2>("disk/expected/bus-of-serial")) {
        write_file("/proc/bus/usb/devices", text);
        EXPECT_EQ(get_bus_number_from_udevid("usb-VENDOR_ABC123-0:0"), std::stoi(bus)) << text;
    }
    // Of a serial number 31 characters count.
    write_file("/proc/bus/usb/devices", "T:  Bus=02\nS:  SerialNumber=" + std::string(40, 'A') + "\n");
    EXPECT_EQ(get_bus_number_from_udevid(std::string(31, 'A').c_str()), 2);
    debug = 10;
    write_file("/proc/bus/usb/devices",
               "T:  Bus=10 x\nT:  Bus=1 \nS:  SerialNumber=A\nT:  \nS:  \nT:  Bus=03\nS:  SerialNumber=B x\n");
    EXPECT_EQ(printed_by([] { get_bus_number_from_udevid("B"); }),
              read_file("/source/tests/disk/expected/bus-traces.txt"));
}

}  // namespace
