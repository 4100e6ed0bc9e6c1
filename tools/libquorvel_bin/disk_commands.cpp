#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "erasing_commands.h"
#include "foundation/look.h"
#include "libquorvel_bin.h"
#include "telling.h"

namespace {

// Both read the vector as it is, front end's name first, and print their own usage.
int run_disk_signature(int argc, char** argv) {
    return exit_status_of_result(DiskSignature(argc, argv));
}

int run_disk_readerrorcnt(int argc, char** argv) {
    return DiskReadErrorCnt(argc, argv);
}

int run_mydisk(int, char** argv) {
    return IsMyDisk(argv[2]) == 1 ? kExitOk : kExitNo;
}

constexpr char kTemperatureTool[] = "/usr/local/sbin/smartctl";

const char* reason_for_no_temperature(const char* device, int result) {
    constexpr int kNotExecutable = 95;
    if (result == kNotExecutable) return "the node is not usable: it has no executable flag";
    if (!quorvel::path_exists_in_time(device)) {
        return errno != ENOENT                  ? strerror(errno)
               : strchr(device, '/') != nullptr ? "no such device"
                                                : "no such path; a device is /dev/NAME";
    }
    if (access(kTemperatureTool, X_OK) != 0) return "the tool /usr/local/sbin/smartctl is missing";
    return "the tool does not tell it";
}

int run_temperature(int, char** argv) {
    int result = LibQuorvelBin_GetDiskTemperature(0, argv[2]);
    return result == 0 ? kExitOk : no_answer(argv[1], argv[2], reason_for_no_temperature(argv[2], result));
}

int run_fstype(int, char** argv) {
    char type[256] = "";
    if (LibQuorvelBin_GetFsType(type, sizeof type, argv[2]) == 0) return kExitOk;
    return no_answer(argv[1], argv[2], reason_of_file("/proc/mounts", "nothing is mounted there"));
}

int print_number(uint64_t number) {
    printf("%" PRIu64 "\n", number);
    return kExitOk;
}

int run_partition_blocks(int, char** argv) {
    uint64_t blocks = GetPartitionBlocks(argv[2]);
    if (blocks != 0) return print_number(blocks);
    return no_answer(argv[1], argv[2], reason_of_file("/proc/partitions", "no such disk or partition"));
}

template <uint64_t (*Size)(const char*)>
int run_size(int, char** argv) {
    uint64_t bytes = Size(argv[2]);
    if (bytes != UINT64_MAX) return print_number(bytes);
    return no_answer(argv[1], argv[2], reason_of_errno("its file system does not tell"));
}

int run_mounted(int, char** argv) {
    int mounted = IsMounted(argv[2]);
    printf("%d\n", mounted);
    return mounted == 1 ? kExitOk : kExitNo;
}

int run_fsinfo(int, char** argv) {
    struct mounted_fs_info info;
    if (GetMountedFsInfo(argv[2], &info) == 0) return kExitOk;
    return no_answer(argv[1], argv[2], reason_of_errno("its file system does not tell"));
}

template <int (*Function)(const char*)>
int run_on_device(int, char** argv) {
    return exit_status_of_result(Function(argv[2]));
}

// clang-format off
constexpr Command kCommands[] = {
    {"disk_signature",         "set|get DEVICE [OPTION]...",     "write (-r RAW_DEVICE -d IN_DEVICE -e yes|no) or print a disk's signature; set OVERWRITES the start of DEVICE", "0 also when DEVICE failed, 1 bad option or no eth0", 0, -1, run_disk_signature},
    {"disk_readerrorcnt",      "set|get DEVICE [OPTION]...",     "write (-c to clear, -n COUNT) or print a disk's read-error counter; set OVERWRITES 4 bytes of DEVICE",         "0 done, 1 bad option or count, 2 DEVICE failed",     0, -1, run_disk_readerrorcnt},
    {"mydisk",                 "NAME",                           "print a disk's signature and tell whether this unit wrote it",            "0 this unit's, 1 not",             1, 1, run_mydisk},
    {"temperature",            "DEVICE",                         "print a disk's temperature in degrees Celsius",                           "0 printed, 1 not known",           1, 1, run_temperature},
    {"fstype",                 "MOUNTPOINT",                     "print the type of a mounted file system",                                 "0 printed, 1 not mounted",         1, 1, run_fstype},
    {"partition_blocks",       "DEVICE",                         "print the size of a disk or partition in KiB",                            "0 printed, 1 not known",           1, 1, run_partition_blocks},
    {"partition_size",         "MOUNTPOINT",                     "print the bytes of a mounted file system",                                "0 printed, 1 no such path",        1, 1, run_size<LibQuorvelBin_GetPartitionSize>},
    {"partition_used",         "MOUNTPOINT",                     "print its bytes not available to users",                                  "0 printed, 1 no such path",        1, 1, run_size<LibQuorvelBin_GetPartitionUsedSize>},
    {"partition_free",         "MOUNTPOINT",                     "print its bytes available to users",                                      "0 printed, 1 no such path",        1, 1, run_size<LibQuorvelBin_GetPartitionFreeSize>},
    {"mounted",                "TEXT",                           "print 1 when a line of the mount table contains TEXT, else 0",            "0 yes, 1 no",                      1, 1, run_mounted},
    {"fsinfo",                 "MOUNTPOINT",                     "print type number, total and free bytes of a mounted file system",        "0 printed, 1 no such path",        1, 1, run_fsinfo},
    {"mount_test",             "DEVICE",                         "mount and unmount DEVICE at /tmp/mount_test",                             "0 always",                         1, 1, run_on_device<LibQuorvelBin_MountTest>},
    {"create_partition",       "[--force] [--dry-run] DEVICE", "ERASE an internal disk and lay it out anew",                                "0 done, 1 failed, 3 refused and nothing done", 1, 3, run_create_partition},
    {"create_short_partition", "[--force] [--dry-run] DEVICE", "ERASE an internal disk and lay it out with 17 GB for system and data",      "0 done, 1 failed, 3 refused and nothing done", 1, 3, run_create_short_partition},
    {"create_usb_partition",   "[--force] [--dry-run] DEVICE [FILESYSTEM [LABEL]]", "ERASE a USB disk and make one partition; fat, vfat, xfs or ext3; label gpt or MBR", "0 done, 1 failed, 3 refused and nothing done", 1, 5, run_create_usb_partition},
    {"test_usersize",          "DEVICE",                         "print the data size a disk would get",                                    "0 printed, 1 disk refused",        1, 1, run_on_device<test_usersize>},
};
// clang-format on

}  // namespace

const std::span<const Command> kDiskCommands = kCommands;
