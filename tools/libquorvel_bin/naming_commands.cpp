#include "naming_commands.h"

#include <stdio.h>

#include <charconv>
#include <string_view>

#include "libquorvel_bin.h"

namespace {

// Room for the longest name the library gives: "/dev/", a configured word and a number.
constexpr size_t kNameSize = 128;

using Conversion = int (*)(const char* name, char* dst, size_t size);

// Each name's answer is a line, which the library prints; among several, one without an answer gives "-". The function
// is called by its name: as a pointer the loader would look it up at every start.
template <Conversion Convert>
int run_conversion(int argc, char** argv) {
    int status = kExitOk;
    for (int i = 2; i < argc; i++) {
        char name[kNameSize] = "";
        if (Convert(argv[i], name, sizeof name) == 0) continue;
        status = kExitNo;
        from_cmdline = 1;
        if (argc > 3) puts("-");
    }
    return status;
}

int run_slots(int, char**) {
    return exit_status_of_result(LibQuorvelBin_DumpDiskPathConfig());
}

// A slot index or host number: digits only. Says so and gives false for another text.
bool read_number(char** argv, int& number) {
    std::string_view text(argv[2]);
    std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc() && result.ptr == text.data() + text.size() && number >= 0) return true;
    fprintf(stderr, "libquorvel_bin: %s: '%s' is no number\n", argv[1], argv[2]);
    return false;
}

int run_slot_predicate(int (*ask)(int), char** argv) {
    int index = 0;
    return read_number(argv, index) ? print_predicate(ask(index)) : kExitUsage;
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
    int host = 0;
    if (!read_number(argv, host)) return kExitUsage;
    if (LibQuorvelBin_GetScsinameFromDisknumber(host, name, sizeof name) != 0 || name[0] == '\0') return kExitNo;
    puts(name);
    return kExitOk;
}

// An empty name is an answer too: all usable disks belong to LVM.
int run_available_disk(int, char**) {
    char name[16] = "";
    if (LibQuorvelBin_GetAvailableDiskInfo(name) == 0) return kExitNo;
    puts(name);
    return kExitOk;
}

int run_spooldir(int, char**) {
    char directory[4096] = "";
    if (LibQuorvelBin_GetSpoolDir(directory, sizeof directory) == nullptr) return kExitNo;
    puts(directory);
    return kExitOk;
}

// clang-format off
constexpr Command kCommands[] = {
    {"disks",          "",          "list all disks and bays: kernel name, logical name, SCSI address",  "0 listed, 1 /sys/block is unreadable",      0, 0,  run_disks},
    {"diskname",       "DEVICE...", "print the logical name of a kernel device (sda, /dev/sda)",         "0 printed, 1 unknown",                      1, -1, run_conversion<LibQuorvelBin_GetDisknameFromDevname>},
    {"devname",        "DISK...",   "print the kernel device of a logical disk (disk1, /dev/disk1)",     "0 printed, 1 unknown or absent",            1, -1, run_conversion<LibQuorvelBin_GetDevnameFromDiskname>},
    {"scsiid",         "NAME...",   "print the SCSI address of an internal disk (disk1 or sda)",         "0 printed, 1 none",                         1, -1, run_conversion<LibQuorvelBin_GetScsiIDFromDiskname>},
    {"slots",          "",          "print the slot table in the syntax of /etc/diskpath.conf",          "0, also without a table",                   0, 0,  run_slots},
    {"connected",      "INDEX",     "print 1 when a disk is in the slot (the first is 0), else 0",       "0 for 1, 1 for 0",                          1, 1,  run_connected},
    {"powered",        "INDEX",     "print 1 when the slot has power (the first is 0), else 0",          "0 for 1, 1 for 0",                          1, 1,  run_powered},
    {"scsiname",       "HOST",      "print the kernel name of the disk behind a SCSI host number",       "0 printed, 1 no such host or disk",         1, 1,  run_scsiname},
    {"lvm_volume",     "DEVICE",    "print 1 when the device belongs to an LVM volume group, else 0",    "0 for 1, 1 for 0",                          1, 1,  run_lvm_volume},
    {"lvm_disk",       "NAME",      "print 1 when LVM has a volume group for the disk or array, else 0", "0 for 1, 1 for 0",                          1, 1,  run_lvm_disk},
    {"available_disk", "",          "print the first usable disk or array; empty when LVM has them all", "0 printed, 1 none",                         0, 0,  run_available_disk},
    {"spooldir",       "",          "print the spool directory",                                         "0 printed, 1 none",                         0, 0,  run_spooldir},
};
// clang-format on

}  // namespace

const std::span<const Command> kNamingCommands = kCommands;
