// Names by slot table, in both directions.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "disk/naming_machine.h"
#include "disk/slot_match.h"

namespace {

class NamingTables : public ApplianceTest {};

// A place in sysfs that a row describes; the models hold such places as kernels show them.
std::string place_of(const struct disk_path& row) {
    std::string place = std::string(strncmp(row.path, "pci", 3) == 0 ? "" : "pci0000:00/0000:00:1f.2/ata1/") + row.path;
    if (row.type != DISK_PATH_USB) return place + "/x";
    std::string port = "7-" + std::to_string(row.usb_port1), hub = port + "." + std::to_string(row.usb_port2);
    return row.usb_port2 == -1 ? usb_place(place, 7, {port}) : usb_place(place, 7, {port, hub});
}

void expect_both_directions(const std::string& platform, const struct disk_path& row) {
    SCOPED_TRACE(platform + " " + place_of(row));
    remove_tree("/sys/block");
    add_disk("sdq", place_of(row));
    make_directory("/sys/block/md0");
    static const char* const words[] = {"disk", "usbdisk", "bootdisk"};
    const std::string name = words[row.type] + std::to_string(row.slot);
    const std::string address = row.scsi_id != nullptr ? row.scsi_id : "none";
    EXPECT_EQ(diskname("sdq"), name);
    EXPECT_EQ(diskname("/dev/sdq\n"), "/dev/" + name);
    EXPECT_EQ(devname(name), "sdq");
    EXPECT_EQ(devname("/dev/" + name + "\nx"), "/dev/sdq");
    EXPECT_EQ(scsiid(name), address);
    EXPECT_EQ(scsiid("/dev/sdq"), address);
    EXPECT_EQ(scsiid("/dev/dev/sdq"), address) << "a name on the way is stripped like any other";
}

TEST_F(NamingTables, EverySlotInBothDirections) {
    const std::pair<const char*, const struct disk_path*> tables[] = {
        {"borel",   borel_disk_set        },
        {"nisk",    nisk_disk_set         },
        {"pellmar", pellmar_12bay_disk_set}
    };
    for (auto [platform, set] : tables) {
        SetUp();
        set_platform(platform, "3.3.4");
        for (const struct disk_path* row = set; row->type != DISK_PATH_END; row++) {
            bool endless = row->type == DISK_PATH_USB && row->usb_port1 == -1;
            if (!endless) expect_both_directions(platform, *row);
        }
    }
}

TEST_F(NamingTables, OldLayoutGoesThroughTheDeviceLink) {
    set_platform("borel", "2.6.31.7");
    make_link("/sys/block/sda/device", "../../devices/pci0000:00/0000:00:1f.2/" + target(2));
    make_link("/sys/block/sdb/device", "../../devices/" + usb_place("pci0000:00/0000:00:1d.7", 3, {"3-2"}));
    EXPECT_EQ(diskname("sda"), "disk3");
    EXPECT_EQ(diskname("sdb"), "usbdisk2");
    EXPECT_EQ(devname("disk3"), "none") << "the other direction reads links of the new layout only";
    set_kernel("2.6.31.8");
    EXPECT_EQ(diskname("sda"), "none");
}

TEST_F(NamingTables, UnknownNamesGiveNothing) {
    set_platform("borel", "3.3.4");
    add_disk("sda", "pci0000:00/0000:00:1f.2/" + target(0));
    add_disk("sdb", "pci0000:00/0000:00:1f.2/" + target(5));
    add_disk("sdc", usb_place("pci0000:00/0000:00:1d.7", 1, {"1-3"}));
    for (const auto& [question, name] : table<2>("disk/expected/unknown-names"))
        EXPECT_EQ((question == "diskname" ? diskname : question == "devname" ? devname : scsiid)(name), "none") << name;
    EXPECT_EQ(diskname(std::string(5000, 's')), "none");
    EXPECT_EQ(devname("disk1" + std::string(5000, 'x')), "sda") << "the number behind the first disk counts";
    EXPECT_EQ(converted(LibQuorvelBin_GetDevnameFromDiskname, "/dev/disk1", 4), "/de");
    EXPECT_EQ(converted(LibQuorvelBin_GetDevnameFromDiskname, "disk1", 0), "none");
}

TEST_F(NamingTables, AnUnreadableLinkEndsTheSearchForADevice) {
    set_platform("borel");
    add_disk("sda", "pci0000:00/0000:00:1f.2/" + target(1));
    EXPECT_EQ(devname("disk1"), "none");
    make_directory("/sys/block/sdb");
    EXPECT_EQ(devname("disk1"), "none");
    EXPECT_EQ(devname("bootdisk1"), "none") << "no row, so no link is read";
    remove_tree("/sys/block");
    EXPECT_EQ(devname("disk1"), "none");
}

TEST_F(NamingTables, AnswersArePrintedOnTheCommandLine) {
    set_platform("borel", "3.3.4");
    add_disk("sda", "pci0000:00/0000:00:1f.2/" + target(2));
    from_cmdline = 1;
    EXPECT_EQ(printed_by([] { diskname("/dev/sda"); }), "/dev/disk3\n");
    EXPECT_EQ(printed_by([] { devname("disk3"); }), "sda\n");
    EXPECT_EQ(printed_by([] { scsiid("sda"); }), "2:0:0:0\n") << "the name on the way is not printed";
    EXPECT_EQ(from_cmdline, 1);
    EXPECT_EQ(printed_by([] { scsiid("sdb"); }), "");
    EXPECT_EQ(from_cmdline, 0) << "a name that leads nowhere leaves the flag off";
}

TEST_F(NamingTables, ConfiguredWordsAndTheirRoom) {
    std::string word(79, 'w');
    set_kernel("3.3.4");
    write_file("/etc/diskpath.conf",
               "HDD_DISKNAME=bay\nHDD_INTERNAL=1, host1, 1:0:0:0\nHDD_DISKNAME=" + word +
                   "sd\nHDD_INTERNAL=123, host2, 2:0:0:0\nHDD_DISKNAME=mydisk\nHDD_INTERNAL=4, host3, 3:0:0:0\n");
    for (int host = 1; host <= 3; host++)
        add_disk(std::string("sd") + "abcd"[host], "x/" + target(host));
    EXPECT_EQ(converted(LibQuorvelBin_GetDisknameFromDevname, "sdb", 0), "bay1") << "short, the size is not looked at";
    EXPECT_EQ(converted(LibQuorvelBin_GetDisknameFromDevname, "sdc", 82), "none");
    EXPECT_EQ(converted(LibQuorvelBin_GetDisknameFromDevname, "sdc", 83), word + "123");
    EXPECT_EQ(devname("bay1"), "none") << "a name without disk in it cannot be looked up";
    EXPECT_EQ(devname("mydisk4"), "sdd");
    EXPECT_EQ(devname("mydisk40"), "none");
    EXPECT_EQ(devname("disk4"), "none") << "a row with a word answers to that only";
    EXPECT_EQ(scsiid("mydisk4"), "3:0:0:0");
}

TEST_F(NamingTables, ExtensionCardComesAfterTheTable) {
    set_platform("borel", "3.3.4");
    add_disk("sda", "pci0000:00/0000:00:1f.2/" + target(0));
    add_disk("sdb", "pci0000:00/0000:07:00.0/" + target(8));
    EXPECT_EQ(diskname("sdb"), "none");
    write_file("/etc/extslot.conf", "extslot1=SATA, 1, " + target(0) +
                                        ", 0:0:0:0\nextslot1=SATA, 5, 0000:07:00.0, 8:0:0:0\nextslot2=NONE, 6\n");
    EXPECT_EQ(diskname("sda"), "disk1");
    EXPECT_EQ(diskname("/dev/sdb"), "/dev/disk5");
    EXPECT_EQ(devname("disk5"), "sdb");
    EXPECT_EQ(devname("disk6"), "none") << "a row without a path matches nothing";
    EXPECT_EQ(scsiid("disk5"), "none") << "addresses come from the table in force";
}

// The row that cannot decide is looked at forever, at almost no cost; whoever may give up does.
TEST_F(NamingTables, UndecidedRowNeverEnds) {
    set_platform("pellmar", "3.3.4");
    std::string place = usb_place("pci0000:00/0000:00:1d.0", 2, {"2-1", "2-1.7"});
    add_disk("sdx", place);
    std::string full = "/sys/block/../devices/" + place;
    quorvel::DiskPlace disk(full, full);
    int looks = 0;
    EXPECT_EQ(quorvel::find_row(pellmar_12bay_disk_set, disk, [&looks] { return ++looks < 3; }), 15);
    EXPECT_EQ(looks, 3);

    pid_t child = fork();
    if (child == 0) _exit(diskname("sdx") == "none" ? 1 : 2);
    usleep(700'000);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, WNOHANG), 0) << "it returned";
    kill(child, SIGKILL);
    struct rusage usage = {};
    ASSERT_EQ(wait4(child, &status, 0, &usage), child);
    EXPECT_LT(usage.ru_utime.tv_sec * 1'000'000 + usage.ru_utime.tv_usec, 200'000) << "it burns a processor";
}

}  // namespace
