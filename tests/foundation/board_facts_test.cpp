// What differs between boards: word size, and what a 32-bit C library must be told to do with large files and late
// dates. The record on disk and the md driver's request have their assertions beside the code.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "libquorvel_bin.h"
#include "support/appliance.h"

namespace {

static_assert(sizeof(off_t) == 8 && sizeof(time_t) == 8 && sizeof(ino_t) == 8);
// Records without pointers are the same everywhere, those with pointers have no other differences.
static_assert(sizeof(netdev_map) == 16 && sizeof(host_info) == 224 && sizeof(firm_info) == 192);
static_assert(sizeof(os_version) == 136 && sizeof(mounted_fs_info) == 24 && offsetof(mounted_fs_info, total_size) == 8);
static_assert(sizeof(diskinfo_code) == 132 && sizeof(md_trans_entry) == 256 && sizeof(sb_info) == 144);
static_assert(sizeof(disk_path) == 16 + 3 * sizeof(void*) && sizeof(platform_name) == 2 * sizeof(void*));

struct BoardFacts : ApplianceTest {};

TEST_F(BoardFacts, FilesBeyondTwoGigabytesAndDatesBeyond2038AreNothingSpecial) {
    constexpr off_t kSize = 5ll << 30;
    const struct timespec late[] = {
        {5ll << 30, 0},
        {5ll << 30, 0}
    };
    for (const char* path : {"/etc/nas_feature", "/dev/disk1"}) {
        write_file(path, "MAX_DISK_NUM=4\n");
        ASSERT_EQ(truncate(path, kSize), 0);
        ASSERT_EQ(utimensat(AT_FDCWD, path, late, 0), 0);
    }
    EXPECT_EQ(LibQuorvelBin_GetMaxDiskNum(), 4);
    EXPECT_EQ(IsFileExist("/dev/disk1"), 1);
    char front[] = "libquorvel_bin", word[] = "disk_readerrorcnt", set[] = "set", disk[] = "/dev/disk1", n[] = "-n",
         count[] = "7";
    char* argv[] = {front, word, set, disk, n, count, nullptr};
    EXPECT_EQ(DiskReadErrorCnt(6, argv), 0);
    struct stat status;
    ASSERT_EQ(stat("/dev/disk1", &status), 0);
    EXPECT_EQ(status.st_size, kSize);
}

}  // namespace
