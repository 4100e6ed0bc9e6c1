#include "naming_commands.h"

#include <limits.h>
#include <stdio.h>
#include <string.h>

#include "libquorvel_bin.h"
#include "naming_reasons.h"
#include "telling.h"

namespace {

// Room for the longest name the library gives: "/dev/", a configured word and a number.
constexpr size_t kNameSize = 128;

constexpr int kExitNeverDecided = 3;

// Each name's answer is a line, given as soon as it is there; among several, "-" stands for one without. `answer`
// prints the line, or says why there is none and returns the exit status of that.
template <int (*Answer)(char** argv, const char* name)>
int run_names(int argc, char** argv) {
    int status = kExitOk;
    for (int i = 2; i < argc; i++) {
        int result = is_path(argv[i]) ? no_answer(argv[1], argv[i], "a path is no device") : Answer(argv, argv[i]);
        from_cmdline = 1;
        status = result > status ? result : status;
        if (argc > 3 && result != kExitOk) puts("-");
        if (argc > 3) (void)fflush(stdout);
    }
    return status;
}

int never_decided(char** argv, const char* name) {
    (void)no_answer(argv[1], name, "never decided: no USB bus behind the path of a USB row of the slot table");
    return kExitNeverDecided;
}

int print_diskname(char** argv, const char* device) {
    char name[kNameSize] = "";
    if (is_never_decided(device)) return never_decided(argv, device);
    if (LibQuorvelBin_GetDisknameFromDevname(device, name, sizeof name) == 0) return kExitOk;
    return no_answer(argv[1], device, reason_for_no_diskname(device));
}

int print_scsiid(char** argv, const char* name) {
    char address[kNameSize] = "";
    if (is_never_decided(name)) return never_decided(argv, name);
    if (LibQuorvelBin_GetScsiIDFromDiskname(name, address, sizeof address) == 0) return kExitOk;
    return no_answer(argv[1], name, reason_for_no_scsiid(name));
}

// What a stranger's disk says of itself can give two names to one device: only the one that the device has counts.
int print_devname(char** argv, const char* disk) {
    char device[kNameSize] = "", name[kNameSize] = "";
    from_cmdline = 0;
    if (LibQuorvelBin_GetDevnameFromDiskname(disk, device, sizeof device) != 0)
        return no_answer(argv[1], disk, reason_for_no_devname(disk));
    if (is_never_decided(device)) return never_decided(argv, device);
    if (LibQuorvelBin_GetDisknameFromDevname(device, name, sizeof name) != 0)
        return no_answer(argv[1], disk, "the device found has no logical name");
    if (strcmp(without_dev(name), without_dev(disk)) != 0)
        return no_answer(argv[1], disk, "the device found is another disk by its own name");
    puts(device);
    return kExitOk;
}

int run_slots(int, char**) {
    return exit_status_of_result(LibQuorvelBin_DumpDiskPathConfig());
}

int run_slot_predicate(int (*ask)(int), char** argv) {
    unsigned index = 0;
    if (!read_number(argv[1], argv[2], INT_MAX - 1, index)) return kExitUsage;
    return print_predicate(ask(static_cast<int>(index)));
}
int run_connected(int, char** argv) {
    return run_slot_predicate(LibQuorvelBin_IsConnectedDisk, argv);
}
int run_powered(int, char** argv) {
    return run_slot_predicate(LibQuorvelBin_IsPowerSupplyedDisk, argv);
}
int run_lvm_volume(int, char** argv) {
    return print_predicate(LibQuorvelBin_IsLvmVolume(argv[2]));
}
int run_lvm_disk(int, char** argv) {
    return print_predicate(IsLVMDisk(argv[2]));
}

int run_scsiname(int, char** argv) {
    char name[kNameSize] = "";
    unsigned host = 0;
    if (!read_number(argv[1], argv[2], INT_MAX, host)) return kExitUsage;
    if (LibQuorvelBin_GetScsinameFromDisknumber(static_cast<int>(host), name, sizeof name) != 0)
        return no_answer(argv[1], argv[2], "no such host");
    if (name[0] == '\0') return no_answer(argv[1], argv[2], "no disk behind this host");
    puts(name);
    return kExitOk;
}

// An empty name is an answer too: all usable disks belong to LVM.
int run_available_disk(int, char** argv) {
    char name[16] = "";
    if (LibQuorvelBin_GetAvailableDiskInfo(name) == 0)
        return no_answer(argv[1], nullptr, reason_of_file("/etc/tevra/diskinfo", "no disk or array is in use"));
    puts(name);
    return kExitOk;
}

int run_spooldir(int, char** argv) {
    char directory[4096] = "";
    if (LibQuorvelBin_GetSpoolDir(directory, sizeof directory) == nullptr)
        return no_answer(argv[1], nullptr, "no usable disk, array or volume has one");
    puts(directory);
    return kExitOk;
}

// clang-format off
constexpr Command kCommands[] = {
    {"disks",          "",          "list all disks and bays: kernel name, logical name, SCSI address",  "0 listed, 1 /sys/block is unreadable",      0, 0,  run_disks},
    {"diskname",       "DEVICE...", "print the logical name of a kernel device (sda, /dev/sda)",         "0 printed, 1 unknown, 3 never decided",     1, -1, run_names<print_diskname>},
    {"devname",        "DISK...",   "print the kernel device of a logical disk (disk1, /dev/disk1)",     "0 printed, 1 unknown or absent, 3 never decided", 1, -1, run_names<print_devname>},
    {"scsiid",         "NAME...",   "print the SCSI address of an internal disk (disk1 or sda)",         "0 printed, 1 none, 3 never decided",        1, -1, run_names<print_scsiid>},
    {"slots",          "",          "print the slot table in the syntax of /etc/diskpath.conf",          "0, also without a table",                   0, 0,  run_slots},
    {"connected",      "INDEX",     "print 1 when a disk is in the slot (the first is 0), else 0",       "0 for 1, 1 for 0, 2 no number",             1, 1,  run_connected},
    {"powered",        "INDEX",     "print 1 when the slot has power (the first is 0), else 0",          "0 for 1, 1 for 0, 2 no number",             1, 1,  run_powered},
    {"scsiname",       "HOST",      "print the kernel name of the disk behind a SCSI host number",       "0 printed, 1 no such host or disk, 2 no number", 1, 1,  run_scsiname},
    {"lvm_volume",     "DEVICE",    "print 1 when the device belongs to an LVM volume group, else 0",    "0 for 1, 1 for 0",                          1, 1,  run_lvm_volume},
    {"lvm_disk",       "NAME",      "print 1 when LVM has a volume group for the disk or array, else 0", "0 for 1, 1 for 0",                          1, 1,  run_lvm_disk},
    {"available_disk", "",          "print the first usable disk or array; empty when LVM has them all", "0 printed, 1 none",                         0, 0,  run_available_disk},
    {"spooldir",       "",          "print the spool directory",                                         "0 printed, 1 none",                         0, 0,  run_spooldir},
};
// clang-format on

}  // namespace

const std::span<const Command> kNamingCommands = kCommands;
