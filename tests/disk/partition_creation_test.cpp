#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "disk/data_partition_size.h"
#include "quorvel/disk.h"
#include "support/appliance.h"

namespace {

using Layout = std::function<int()>;
int internal() {
    return create_partition("/dev/sdc");
}
int trial() {
    return test_usersize("/dev/sdc");
}

// clang-format off
struct PartitionCreation : ApplianceTest {
    // The tools write one list of commands and do as told. As the real one, parted takes no device behind the
    // label words.
    static void tools(const std::string& rules) {
        for (const char* tool : {"parted", "dd", "fdisk"})
            stand_in(std::string("/usr/local/sbin/") + tool,
                     "echo \"${0##*/} $*\" >>/run/commands\ncase \"${0##*/} $*\" in " + rules +
                     "\n*msdos*) ls mklabel 2>/dev/null >>/run/commands; echo failed with error; exit 1;;\nfdisk*) sed '1s/^-e //' >>/run/commands;;\nesac");
    }
    // A heading and then error output, output, result and the commands run, on a disk of so many blocks.
    static std::string transcript(uint64_t blocks, const Layout& call, const std::string& heading = "") {
        write_file("/proc/partitions", "major minor  #blocks  name\n\n   8       32 " + std::to_string(blocks) + " sdc\n");
        remove_tree("/run/commands");
        Capture errors(2);
        int result = 0;
        const auto printed = printed_by([&] { result = call(); });
        const auto shown = "## " + std::to_string(blocks) + " [" + heading + "]\n" + errors.text() + printed;
        return shown + "= " + std::to_string(result) + "\n" + read_file("/run/commands");
    }
};

TEST_F(PartitionCreation, InternalLayout) {
    std::string done;
    // Somebody's file in the caller's directory is no device.
    write_file("/tmp/mklabel", "");
    ASSERT_EQ(0, chdir("/tmp"));
    for (const char* rules : {"", "dd*) exit 1;;", "*gpt) exit 1;;", "*7168M) exit 1;;", "*G) exit 1;;", "*G) echo it failed with error;;",
                              "*M | *gpt) echo failed with error;; *grub) exit 1;;"}) {
        tools(rules);
        done += transcript(156290904, internal, rules);
    }
    tools("");
    // A path of 32 characters, the first 31 of which name the disk.
    done += transcript(156290904, [] { return create_partition("/dev////////////////////////sdc1"); }, "sdc1");
    for (uint64_t blocks : {0UL, 243164063UL, 244198584UL, 250976562UL, 250976563UL, 1953514584UL})
        done += transcript(blocks, internal) + transcript(blocks, trial, "trial");
    EXPECT_EQ(done, read_file("/source/tests/disk/expected/internal-layouts.txt"));
}

TEST_F(PartitionCreation, ShortLayoutsStayShort) {
    tools("");
    const pid_t child = fork();
    if (child == 0) {
        std::string done = transcript(156290904, [] { return create_short_partition("/dev/sdc"); }, "short");
        done += transcript(156290904, internal);
        done += transcript(0, trial, "trial");
        EXPECT_EQ(done, read_file("/source/tests/disk/expected/short-layouts.txt"));
        _exit(HasFailure());
    }
    int status = 1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
}

TEST_F(PartitionCreation, UsbLayout) {
    const std::string fails = "echo failed with error;;", reads = "fdisk*) cat >/dev/null; ";
    const struct { const char *file_system, *label; std::string rules; } cases[] = {
        {"vfat", "gpt", ""}, {"xfs", "gpt", ""}, {nullptr, "gpt", "*gpt) " + fails}, {"fat", "gpt", "*8589) " + fails}, {"fat", "GPT", ""},
        {"xfs", nullptr, ""}, {"fat", "", reads + "exit 1;;"}, {"fat", "", reads + fails}, {"fat", "", "dd*) exit 1;;"},
    };
    std::string done;
    for (const auto& [file_system, label, rules] : cases) {
        tools(rules);
        const auto call = [format = file_system, scheme = label] { return create_usb_partition("/dev/sdc", format, scheme); };
        done += transcript(8388608, call, std::string(file_system ? file_system : "-") + " " + (label ? label : "-") + " " + rules);
    }
    done += transcript(0, [] { return create_usb_partition("/dev/sdc", "xfs", "gpt"); });
    EXPECT_EQ(done, read_file("/source/tests/disk/expected/usb-layouts.txt"));
}

TEST_F(PartitionCreation, WhatWasBegunIsFinished) {
    tools("dd*) kill -TERM $(cat /run/pid);;");
    const pid_t child = fork();
    if (child == 0) {
        write_file("/run/pid", std::to_string(getpid()));
        (void)transcript(8388608, [] { return create_usb_partition("/dev/sdc", "xfs", "gpt"); });
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_NE(read_file("/run/commands").find("mkpart primary xfs"), std::string::npos);
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
        (void)transcript(65536, [format = file_system, scheme = label] { return create_usb_partition("/dev/sdc", format, scheme); });
        const auto table = printed_by([] { EXPECT_EQ(0, system("sfdisk -d /dev/sdc")); });
        EXPECT_NE(table.find(partition), std::string::npos) << table;
    }
}

// Sizes around which the real parted begins to find a place for the data partition.
TEST_F(PartitionCreation, RoomIsWherePartedFindsIt) {
    stand_in("/usr/local/sbin/dd");
    if (access("/usr/sbin/parted", X_OK) != 0) GTEST_SKIP() << "no parted";
    const struct { uint64_t megabytes; bool short_layout; } cases[] = {
        {19980, false}, {20010, false}, {16490, true}, {16510, true},
    };
    for (const auto& [megabytes, short_layout] : cases) {
        const uint64_t blocks = megabytes * 1000000 / 1024;
        write_file("/dev/sdc", "");
        ASSERT_EQ(0, truncate("/dev/sdc", static_cast<off_t>(blocks * 1024)));
        const pid_t child = fork();
        if (child == 0) {
            int result = -1;
            const auto create = short_layout ? create_short_partition : create_partition;
            (void)transcript(blocks, [&] { return result = create("/dev/sdc"); });
            _exit(result == 0);
        }
        int laid_out = -1;
        ASSERT_EQ(child, waitpid(child, &laid_out, 0));
        EXPECT_EQ(laid_out != 0, quorvel::layout_has_room(blocks, short_layout)) << megabytes;
    }
}
// clang-format on

}  // namespace
