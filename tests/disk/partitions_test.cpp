#include <fcntl.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include "quorvel/disk.h"
#include "support/appliance.h"

extern "C" int32_t from_cmdline;

namespace {

struct Partitions : ApplianceTest {};

// clang-format off
TEST_F(Partitions, BlocksComeFromTheFirstLineThatHoldsTheName) {
    write_file("/proc/partitions", "major minor  #blocks  name\n\n   8       48 19531825152 sdd\n"
               "   8       26      10240 sdb10\n   8       17      32768 sdb1\n   8       18      32769\n");
    const struct { const char* device; uint64_t blocks; } cases[] = {
        {"/dev/sdd", 19531825152}, {"sdb1", 10240}, {"/dev/sde", 0}, {"major", 0}, {"32769", 0}, {"/dev/", 0}, {nullptr, 0},
    };
    for (const auto& [device, blocks] : cases)
        EXPECT_EQ(blocks, GetPartitionBlocks(device)) << device;
}

TEST_F(Partitions, SizesAre64BitProducts) {
    make_directory("/mnt/disk1");
    if (mount("disk", "/mnt/disk1", "tmpfs", 0, "size=20480g") != 0) GTEST_SKIP() << "mounting is refused";
    write_file("/mnt/disk1/file", std::string(1 << 20, 'x'));
    mounted_fs_info info;
    EXPECT_EQ(20ull << 40, LibQuorvelBin_GetPartitionSize("/mnt/disk1"));
    EXPECT_EQ(1ull << 20, LibQuorvelBin_GetPartitionUsedSize("/mnt/disk1"));
    EXPECT_EQ((20ull << 40) - (1ull << 20), LibQuorvelBin_GetPartitionFreeSize("/mnt/disk1"));
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(0, GetMountedFsInfo("/mnt/disk1", &info)); }),
              "f_type=0x1021994\ntotal_size=21990232555520 free_byes=21990231506944\n");
    EXPECT_TRUE(info.f_type == 0x1021994 && info.total_size == 21990232555520 && info.free_bytes == 21990231506944);
    EXPECT_EQ(0, umount("/mnt/disk1"));
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(-1, GetMountedFsInfo("/mnt/disk2", &info)); }), "");
    EXPECT_EQ(UINT64_MAX, LibQuorvelBin_GetPartitionUsedSize("/mnt/disk2"));
}

TEST_F(Partitions, TypesAreThoseOfTheExactMountPoint) {
    const struct { const char* mount_point; size_t size; int result; const char *type, *printed; } cases[] = {
        {"/mnt/disk1", 5, 0, "ext4", "ext4\n"}, {"/mnt/disk1", 4, -1, "???", ""}, {"/mnt", 9, -1, "???", ""},
        {"/mnt/usbdisk2", 9, 0, "vfat", "vfat\n"}, {"/mnt/fuse", 9, 0, "fuse.\33[m", "fuse.?[m\n"},
    };
    char type[9] = "";
    EXPECT_TRUE(LibQuorvelBin_GetFsType(type, sizeof type, "/mnt/disk1") == -1 && IsMounted("sdd") == 0);
    write_file("/proc/mounts", "rootfs / rootfs rw 0 0\n/dev/sdb10 /mnt/disk10 xfs rw 0 0\n/dev/sdd /mnt/disk1 ext4 rw 0 0\n"
               "/dev/sde /mnt/disk1 xfs rw 0 0\nx /mnt/fuse fuse.\33[m rw 0 0\n/dev/sdf /mnt/usbdisk2 vfat rw,codepage=437 0 0" + std::string(8190, ' ') + "/dev/far");
    from_cmdline = 1;
    for (const auto& [mount_point, size, result, expected, printed] : cases) {
        strcpy(type, "???");
        int found = -2;
        EXPECT_EQ(printed, printed_by([&, size = size, mount_point = mount_point] { found = LibQuorvelBin_GetFsType(type, size, mount_point); }));
        EXPECT_EQ(result, found);
        EXPECT_STREQ(expected, type) << mount_point;
    }
    EXPECT_TRUE(IsMounted("/dev/sdb1") && IsMounted("/mnt/disk1 ") && IsMounted("437 0 0") && IsMounted(std::string(9, ' ').append("/dev/far").c_str()) && !IsMounted("/dev/sdc"));
}

TEST_F(Partitions, TrialMountRemovesOnlyItsOwnEmptyDirectory) {
    const std::string shown = "mount /dev/sdb1 /tmp/mount_test\n700\numount -f /tmp/mount_test\n";
    const struct { const char* while_mounted; std::string printed; bool left; } cases[] = {
        {"stat -c %a $2", shown, false}, {"touch $2/user_data", "mount /dev/sdb1 /tmp/mount_test\numount -f /tmp/mount_test\n", true},
        {"rm $2/user_data; stat -c %a $2", shown, true},
    };
    for (const auto& [body, printed, left] : cases) {
        stand_in("/usr/local/sbin/mount", std::string("echo \"mount $*\"\n") + body);
        stand_in("/usr/local/sbin/umount", "echo \"umount $*\"; exit 1");
        EXPECT_EQ(printed, printed_by([] { EXPECT_EQ(0, LibQuorvelBin_MountTest("/dev/sdb1")); }));
        EXPECT_EQ(left, exists("/tmp/mount_test")) << body;
    }
    EXPECT_EQ("", printed_by([] { LibQuorvelBin_MountTest(std::string(1024, 'x').c_str()); }));
    // Directories that a stranger can put there, or lead away.
    remove_tree("/tmp/mount_test");
    make_link("/tmp/mount_test", "/mnt");
    EXPECT_EQ("", printed_by([] { LibQuorvelBin_MountTest("/dev/sdb1"); }));
    remove_tree("/tmp/mount_test");
    make_directory("/tmp/mount_test");
    if (chown("/tmp/mount_test", 1, 1) != 0) return;  // where there is only one account
    EXPECT_EQ("", printed_by([] { LibQuorvelBin_MountTest("/dev/sdb1"); }));
}

// What stays mounted is seen by nobody, and its place can be removed.
TEST_F(Partitions, TrialMountIsHidden) {
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        GTEST_SKIP() << "mounting is refused";
    stand_in("/usr/local/sbin/mount", "/usr/bin/mount -t tmpfs none $2 && touch $2/seen && ls $2");
    stand_in("/usr/local/sbin/umount", "");
    signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ("seen\n", printed_by([] { LibQuorvelBin_MountTest("/dev/sdb1"); }));
    signal(SIGCHLD, SIG_DFL);
    // Without a descriptor for it nothing is mounted where everybody sees it.
    write_file("/run/seen", "");
    stand_in("/usr/local/sbin/mount", "rm -f /run/seen");
    struct rlimit usual;
    getrlimit(RLIMIT_NOFILE, &usual);
    const struct rlimit few = {64, usual.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    std::vector<int> taken;
    while (taken.empty() || taken.back() >= 0)
        taken.push_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(0, LibQuorvelBin_MountTest("/dev/sdb1"));
    setrlimit(RLIMIT_NOFILE, &usual);
    for (int number : taken)
        close(number);
    EXPECT_TRUE(exists("/run/seen"));
    EXPECT_FALSE(exists("/tmp/mount_test"));
}
// clang-format on

}  // namespace
