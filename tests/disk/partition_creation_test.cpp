#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "quorvel/disk.h"
#include "support/appliance.h"

namespace {

// clang-format off
const std::string parted = "parted -s /dev/sdc ", wipe = "dd if=/dev/zero of=/dev/sdc bs=1024 count=1024\n";
const std::string gpt_label = wipe + parted + "mklabel gpt\n", msdos_label = "parted -s mklabel msdos /dev/sdc\n";
const std::string systems = msdos_label + gpt_label + parted + "mkpart primary ext3 0 1024M\n" +
    parted + "mkpart primary ext3 1024M 6144M\n" + parted + "mkpart primary ext3 6144M 6144M\n" +
    parted + "mkpart primary ext3 6144M 6144M\n" + parted + "mkpart primary ext3 6144M 7168M\n";
const std::string data_152 = parted + "mkpart primary ext3 7168M 152G\n", flag = parted + "toggle 3 bios_grub\n";
const std::string set_flag = "toggle bios_grub set to /dev/sdc3\n";
const std::string head_160 = "/dev/sdc total blocks=156290904 bytes=160041885696 149[GB]\n";
const std::string fail = "CreatePartitionHdd_sub:fail.\n", error = "failed with error\n";

int internal() { return create_partition("/dev/sdc"); }

struct PartitionCreation : ApplianceTest {
    // The tools write one list of commands and do as told. As the real one, parted takes no device behind the
    // label words.
    static void tools(const std::string& rules) {
        for (const char* tool : {"parted", "dd", "fdisk"})
            stand_in(std::string("/usr/local/sbin/") + tool,
                     "echo \"${0##*/} $*\" >>/run/commands\ncase \"${0##*/} $*\" in " + rules +
                     "\n*msdos*) echo failed with error; exit 1;;\nfdisk*) sed '1s/^-e //' >>/run/commands;;\nesac");
    }
    // Error output, output, result and the commands run, on a disk of so many blocks.
    static std::string transcript(uint64_t blocks, const std::function<int()>& call) {
        write_file("/proc/partitions", "major minor  #blocks  name\n\n   8       32 " + std::to_string(blocks) + " sdc\n");
        remove_tree("/run/commands");
        Capture errors(2);
        int result = 0;
        const auto printed = printed_by([&] { result = call(); });
        return errors.text() + printed + "= " + std::to_string(result) + "\n" + read_file("/run/commands");
    }
};

TEST_F(PartitionCreation, InternalLayout) {
    const struct { uint64_t blocks; std::string rules, expected; } cases[] = {
        {156290904, "", "usersize=152[GB]\n" + head_160 + data_152 + set_flag + "= 0\n" + systems + data_152 + flag},
        {156290904, "dd*) exit 1;;", fail + head_160 + "= -1\n" + msdos_label + wipe},
        {156290904, "*gpt) exit 1;;", fail + head_160 + "= -1\n" + msdos_label + gpt_label},
        {156290904, "*7168M) exit 1;;", fail + head_160 + "= -1\n" + systems},
        {156290904, "*G) exit 1;;", "usersize=152[GB]\n" + fail + head_160 + data_152 + "= -1\n" + systems + data_152},
        {156290904, "*G) echo it failed with error;;", "usersize=152[GB]\n" + fail + head_160 + data_152 + "= -1\n" + systems + data_152},
        {156290904, "*M | *gpt) echo failed with error;; *grub) exit 1;;", "usersize=152[GB]\n" + head_160 + data_152 + set_flag +
             "CreatePartitionHdd_sub:toggle 3 bios_grub failed. Maybe kernel warning.\n= 0\n" + systems + data_152 + flag},
        {250976563, "", "sectors=501953126 257[GB] 7\nthis disk can't used\n/dev/sdc total blocks=250976563 bytes=257000000512 239[GB]\n= -1\n" + systems},
        {0, "", "/dev/sdc total blocks=0 bytes=0 0[GB]\ndevice[/dev/sdc] access fail.\n= -1\n"},
    };
    for (const auto& [blocks, rules, expected] : cases) {
        tools(rules);
        EXPECT_EQ(expected, transcript(blocks, internal)) << rules;
    }
    // A path of 32 characters, the first 31 of which name the disk.
    EXPECT_EQ(transcript(156290904, [] { return create_partition("/dev////////////////////////sdc1"); }),
              "/dev////////////////////////sdc1 total blocks=0 bytes=0 0[GB]\ndevice[/dev////////////////////////sdc1] access fail.\n= -1\n");
}

TEST_F(PartitionCreation, DataSizeFollowsTheCapacity) {
    const struct { uint64_t blocks; const char *layout, *test; } cases[] = {
        {243164063,  "usersize=237[GB]\n/", "sectors=486328126 249[GB] 9\nthis disk can't used\n= -1\n"},
        {244198584,  "sectors=488397168 250[GB] 0\nusersize=242[GB]\n/", "sectors=488397168 250[GB] 0\nusersize=249[GB]\n= 0\n"},
        {250976562,  "sectors=501953124 256[GB] 6\nusersize=242[GB]\n/", "sectors=501953124 256[GB] 6\nusersize=249[GB]\n= 0\n"},
        {1953514584, "sectors=3907029168 2000[GB] 0\nusersize=1992[GB]\n/", "sectors=3907029168 2000[GB] 0\nusersize=1999[GB]\n= 0\n"},
    };
    tools("");
    const auto test = [] { return test_usersize("/dev/sdc"); };
    for (const auto& [blocks, layout, tested] : cases) {
        EXPECT_TRUE(transcript(blocks, internal).starts_with(layout)) << blocks;
        EXPECT_EQ(tested, transcript(blocks, test).substr(0, strlen(tested)));
    }
    if (pid_t child = fork(); child == 0) {  // whose layouts stay short
        const auto head = "usersize=17[GB]\n" + head_160, data = parted + "mkpart primary ext3 7168M 17G\n";
        const auto layout = head + data + set_flag + "= 0\n" + systems + data + flag;
        _exit(transcript(156290904, [] { return create_short_partition("/dev/sdc"); }) != layout ||
              transcript(156290904, internal) != layout || transcript(0, test) != "usersize=17[GB]\n= 0\n");
    } else {
        int status = 1;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        EXPECT_EQ(0, status);
    }
}

TEST_F(PartitionCreation, UsbLayout) {
    const std::string head = "/dev/sdc total sectors=8388608 bytes=8589934592 8[GB}\n", keys = wipe + "fdisk /dev/sdc\nn\np\n1\n\n\nt\n";
    const std::string gpt = gpt_label + parted + "mkpart primary ";
    const struct { const char *file_system, *label, *rules; std::string expected; } cases[] = {
        {"vfat",  "gpt",   "",                       "= 0\n" + gpt + "fat 0 8589\n"},
        {"xfs",   "gpt",   "",                       "= 0\n" + gpt + "xfs 0 8589\n"},
        {nullptr, "gpt",   "*gpt) echo failed with error;;", "= 0\n" + gpt + "ext3 0 8589\n"},
        {"fat",   "gpt",   "*8589) echo failed with error;;", "CreatePartitionUsb_sub_GPT:fail.\n= -1\n" + gpt + "fat 0 8589\n"},
        {"fat",   "GPT",   "",                       "= 0\n" + keys + "c\np\nw\n\n"},
        {"xfs",   nullptr, "",                       "= 0\n" + keys + "83\np\nw\n\n"},
        {"fat",   "",      "fdisk*) cat >/dev/null; exit 1;;", "CreatePartitionUsb_sub_MBR:fail.\n= -1\n" + wipe + "fdisk /dev/sdc\n"},
        {"fat",   "",      "fdisk*) cat >/dev/null; echo failed with error;;", "CreatePartitionUsb_sub_MBR:fail.\n= -1\n" + wipe + "fdisk /dev/sdc\n"},
        {"fat",   "",      "dd*) exit 1;;",          "CreatePartitionUsb_sub_MBR:fail.\n= -1\n" + wipe},
    };
    for (const auto& [file_system, label, rules, expected] : cases) {
        tools(rules);
        EXPECT_EQ(head + expected, transcript(8388608, [&] { return create_usb_partition("/dev/sdc", file_system, label); }));
    }
    EXPECT_EQ(transcript(0, [] { return create_usb_partition("/dev/sdc", "xfs", "gpt"); }),
              "/dev/sdc total sectors=0 bytes=0 0[GB}\ndevice[/dev/sdc] access fail.\n= -1\n");
}

// The real tools on a disk image. dd keeps the image's size as it keeps a device's, and a shell whose echo knows
// -e takes the place of this disposable root's.
TEST_F(PartitionCreation, RealToolsMakeTheTable) {
    stand_in("/usr/local/sbin/dd", "exec /usr/bin/dd \"$@\" conv=notrunc");
    if (system("test -x /usr/sbin/parted -a -x /usr/sbin/sfdisk && truncate -s 64M /dev/sdc && { mount --bind /usr/bin/bash"
               " /usr/bin/sh || cp --remove-destination /usr/bin/bash /usr/bin/sh; } 2>/dev/null") != 0)
        GTEST_SKIP() << "no parted, no sfdisk, or no other shell to be had";
    const struct { const char *file_system, *label, *partition; } cases[] = {
        {"vfat", "mbr",   "/dev/sdc1 : start=        2048, size=      129024, type=c\n"},
        {"ext3", nullptr, "/dev/sdc1 : start=        2048, size=      129024, type=83\n"},
        {"xfs",  "gpt",   "/dev/sdc1 : start=          34, size=      131005, type=0FC63DAF-8483-4772-8E79-3D69D8477DE4"},
    };
    for (const auto& [file_system, label, partition] : cases) {
        (void)transcript(65536, [&] { return create_usb_partition("/dev/sdc", file_system, label); });
        const auto table = printed_by([] { EXPECT_EQ(0, system("sfdisk -d /dev/sdc")); });
        EXPECT_NE(table.find(partition), std::string::npos) << table;
    }
}
// clang-format on

}  // namespace
