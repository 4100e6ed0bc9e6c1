// Disks: their names by slot tables and slot files, their presence and power, volumes and the spool directory. Every
// slot of the built-in tables is a disk of a sample appliance or of its slot list.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "disk/naming_machine.h"
#include "disk/slot_match.h"

namespace {

class Naming : public ApplianceTest {};

// A set in the syntax of /etc/diskpath.conf, "null" for none; the set is released.
std::string dumped(struct disk_path* set) {
    if (set == nullptr) return "null";
    std::string text = printed_by([set] { disk_path_dump(set); });
    disk_path_free(set);
    return text;
}

// A disk or bay; the context is how many are wanted.
int show(const struct disk_entry* disk, void* wanted) {
    printf("%s,%s,%s,%d,%d ", disk->device, disk->name, disk->address, disk->kind, disk->slot);
    return --*static_cast<int*>(wanted) == 0 ? 7 : 0;
}

// A failure, by its reason.
int reasoned(int result) {
    return result == -1 ? -errno : result;
}

Answer walk(int wanted) {
    int result = 0;
    std::string printed = printed_by([&] { result = reasoned(LibQuorvelBin_WalkDisks(show, &wanted)); });
    return {result, printed};
}

Answer ask(const Words& words) {
    const std::string what = words[0], name = words.size() > 1 ? words[1] : "";
    if (what == "walk") return walk(std::stoi(name));
    if (what == "connected") return {LibQuorvelBin_IsConnectedDisk(std::stoi(name)), ""};
    if (what == "powered") return {LibQuorvelBin_IsPowerSupplyedDisk(std::stoi(name)), ""};
    if (what == "volume") return {LibQuorvelBin_IsLvmVolume(name.c_str()), ""};
    if (what == "lvm_disk") return {IsLVMDisk(name.c_str()), ""};
    if (what == "extension_slots") return {0, dumped(get_ExtSlotConfig())};
    if (what == "load_extension") return {0, printed_by([] { disk_path_free(get_ExtSlotConfig()); })};
    char text[160] = "before";
    const size_t size = words.size() > 2 ? std::stoul(words[2]) : 64;
    int result = errno = 0;
    const std::string printed = printed_by([&] {
        if (what == "available")
            result = LibQuorvelBin_GetAvailableDiskInfo(static_cast<char*>(memset(text, 0, sizeof text)));
        if (what == "scsiname") result = reasoned(LibQuorvelBin_GetScsinameFromDisknumber(std::stoi(name), text, size));
        if (what == "spool") result = LibQuorvelBin_GetSpoolDir(text, size) == text ? 0 : -errno;
        if (what == "diskname") result = reasoned(LibQuorvelBin_GetDisknameFromDevname(name.c_str(), text, size));
        if (what == "devname") result = reasoned(LibQuorvelBin_GetDevnameFromDiskname(name.c_str(), text, size));
        if (what == "scsiid") result = reasoned(LibQuorvelBin_GetScsiIDFromDiskname(name.c_str(), text, size));
    });
    if (what == "scsiid") quorvel::DiskSet left_allocated(quorvel::last_loaded_disk_set);
    return {result, printed + text};
}

TEST_F(Naming, AnswersAsTheMachineIs) {
    const Marks marks = {
        {"{LF}", "\n"},
        {        "{empty}",    ""    },
        {   "{32}",  std::string(32,      's')},
        {   "{79}",  std::string(79,      'w')},
        {  "{118}",  std::string(118,      'x')},
        { "{5000}",  std::string(5000,      's')},
    };
    for (const std::string scenario :
         {"naming-old-layout", "naming-unknown", "naming-unreadable", "naming-answers", "naming-words", "naming-nvme",
          "naming-extension", "extension-cards", "extension-dumps", "disk-walk", "presence", "scsi-names",
          "volume-groups", "available-disks", "spool-directory"}) {
        SetUp();
        play("disk/expected/" + scenario, ask, marks);
    }
}

TEST_F(Naming, SlotFiles) {
    EXPECT_EQ(dumped(get_DiskOrderConfig()) + dumped(get_ExtSlotConfig()), "nullnull");
    const std::string first = "HDD_INTERNAL=1,\tone,\t0:0:0:0\n", path(128, 'p');
    auto orders = table<2>("disk/expected/disk-orders");
    orders.push_back({first + "HDD_INTERNAL=2," + path + ",1:0:0:0\n", "null"});
    // A line of more than 511 characters is read in pieces.
    orders.push_back({"#" + std::string(510, 'x') + first, ";\n" + first});
    for (const auto& [text, dump] : orders) {
        write_file("/etc/diskpath.conf", text);
        EXPECT_EQ(dumped(get_DiskOrderConfig()), dump) << text;
    }
    for (const auto& [text, dump] : table<2>("disk/expected/extension-slots")) {
        write_file("/etc/extslot.conf", text);
        EXPECT_EQ(dumped(get_ExtSlotConfig()), dump) << text;
    }
}

TEST_F(Naming, SetInForceComesFromTheFileFirst) {
    EXPECT_EQ(LibQuorvelBin_GetPlatformDiskSet(), nullptr);
    write_file("/etc/nas_feature", "PRODUCT_SERIES=\"KT720\"\n");
    EXPECT_EQ(LibQuorvelBin_GetPlatformDiskSet(), nullptr);
    EXPECT_EQ(printed_by([] { EXPECT_EQ(LibQuorvelBin_DumpDiskPathConfig(), 0); }), "");
    set_platform("borel");
    write_file("/etc/diskpath.conf", "HDD_DISKNAME=bay\n");
    EXPECT_EQ(LibQuorvelBin_GetPlatformDiskSet(), &borel_disk_set[0]);
    disk_path_free(borel_disk_set);
    write_file("/etc/diskpath.conf", "HDD_BOOT=1,boot\nHDD_INTERNAL=1,one,0:0:0:0\n");
    const struct disk_path* set = LibQuorvelBin_GetPlatformDiskSet();
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set[0].type, DISK_PATH_BOOT);
    EXPECT_EQ(set[0].usb_port1, 0) << "rows of a file begin as zeros";
    EXPECT_EQ(set[2].type, DISK_PATH_END);
    EXPECT_EQ(set[2].slot, 0);
    EXPECT_EQ(set[2].usb_port2, -1);
    disk_path_free(set);
    disk_path_free(nullptr);
    for (const std::string row : {"HDD_BOOT=0,boot\n", "HDD_BOOT=1,boot", "#\n"}) {
        write_file("/etc/diskpath.conf", row);
        errno = 0;
        disk_path_free(get_DiskOrderConfig());
        EXPECT_EQ(errno, row[0] == '#' ? ENODATA : row.back() == '\n' ? EBADMSG : 0) << row;
    }
    disk_path_dump(nullptr);
}

// The row that cannot decide is looked at forever, at almost no cost; whoever may give up does.
TEST_F(Naming, UndecidedRowNeverEnds) {
    set_platform("pellmar", "3.3.4");
    const std::string place = "pci0000:00/0000:00:1d.0/usb2/2-1/2-1.7/2-1.7:1.0/" + target(9);
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
