// The texts the library reads from files and from commands, one row each: where the text goes and what reads it.
#include <stdio.h>
#include <string.h>

#include <initializer_list>

#include "libquorvel_bin.h"
#include "surroundings.h"

namespace {

char text[1024];

void run(int (*entry)(int, char**), std::initializer_list<const char*> lines) {
    for (const char* line : lines) {
        char copy[64];
        char* arguments[8] = {};
        int count = 0;
        snprintf(copy, sizeof copy, "%s", line);
        for (char* word = strtok(copy, " "); word != nullptr; word = strtok(nullptr, " "))
            arguments[count++] = word;
        (void)entry(count, arguments);
        forget_inventory();
    }
}

void read_features() {
    (void)LibQuorvelBin_GetConfValByKey("MAX_DISK_NUM");
    (void)LibQuorvelBin_IsOstrand();
    (void)LibQuorvelBin_GetSeriesName(text, 8);
    (void)LibQuorvelBin_GetPlatformStr(text, sizeof text);
}

void rewrite_settings() {
    (void)set_StringbyKey("/etc/tevra/info", "codepage", "x");
    (void)del_StringbyKey("/etc/tevra/info", "codepage", nullptr);
    (void)local2remote_UTF8(text, 16, "caf\xc3\xa9");
}

void dump(struct disk_path* set) {
    disk_path_dump(set);
    disk_path_free(set);
}

// The forward mapping is left to device_names: a USB row may make it wait for ever, which is its contract. So is the
// address of a slot: a configured set that was asked for one is kept.
void read_disk_order() {
    dump(get_DiskOrderConfig());
    (void)LibQuorvelBin_GetDevnameFromDiskname("disk1", text, sizeof text);
    (void)LibQuorvelBin_GetDevnameFromDiskname("/dev/usbdisk1", text, sizeof text);
}

void read_extension_slots() {
    dump(get_ExtSlotConfig());
}

void read_resolver() {
    char server[1100] = "";
    (void)LibQuorvelBin_GetDNS(2, text, server);
    run(LibQuorvelBin_IsDNSReachable, {"dns -t 1 -r 1"});
}

void read_pci_devices() {
    (void)LibQuorvelBin_GetPlatform();
    read_extension_slots();
}

void read_mounts() {
    (void)IsMounted("/mnt/disk1");
    (void)LibQuorvelBin_GetFsType(text, 8, "/mnt/disk1");
}

void read_disk_status() {
    (void)LibQuorvelBin_GetSpoolDir(text, 64);
    run(LibQuorvelBin_MdHelper, {"md diskmode"});
}

void read_volumes() {
    (void)LibQuorvelBin_IsLvmVolume("md2");
    (void)IsLVMDisk("disk1");
    (void)LibQuorvelBin_GetSpoolDir(text, sizeof text);
}

void read_kernel_release() {
    struct os_version version;
    (void)LibQuorvelBin_GetOsVer(&version);
    LibQuorvelBin_PrintOsVer(&version);
}

void read_interface_settings() {
    (void)LibQuorvelBin_IsBondingMode();
    (void)LibQuorvelBin_IsNetIfEnabled("bond0");
    (void)LibQuorvelBin_IsNetIfDhcp("eth1");
}

}  // namespace

// clang-format off
const FuzzTarget kTargets[] = {
    {"features",           "/etc/nas_feature",           read_features},
    {"settings_rewrite",   "/etc/tevra/info",            rewrite_settings},
    {"disk_order",         "/etc/diskpath.conf",         read_disk_order},
    {"extension_slots",    "/etc/extslot.conf",          read_extension_slots},
    {"usb_devices",        "/proc/bus/usb/devices",
        [] { (void)get_bus_number_from_udevid("USB-LABSTICK1-0"); }},
    {"pci_devices",        "/proc/bus/pci/devices",      read_pci_devices},
    {"mounts",             "/proc/mounts",               read_mounts},
    {"partitions",         "/proc/partitions",           [] { (void)GetPartitionBlocks("/dev/sda1"); }},
    {"disk_status",        "/etc/tevra/diskinfo",        read_disk_status},
    {"volumes",            "/tmp/pvlist",                read_volumes},
    {"sessions",           "/proc/net/iet/session",
        [] { run(LibQuorvelBin_iSCSIHelper, {"iscsi session_info", "iscsi volume_info", "iscsi IsConnected",
                                             "iscsi GetNewTID", "iscsi GetTIDfromTCID 1"}); }},
    {"service_ports",      "/etc/tevra/service_ports",
        [] { run(LibQuorvelBin_FirewallEntry, {"firewall --start"}); }},
    {"backup_task",        "/etc/tevra/backup1",
        [] { run(LibQuorvelBin_BackupHelperEntry, {"backup Info 1", "backup GetDestination 1 1",
                                                   "backup Destinfo 1"}); }},
    {"resolver",           "/etc/resolv.conf",           read_resolver},
    {"kernel_release",     "/proc/sys/kernel/osrelease", read_kernel_release},
    {"mtd_list",           "/proc/mtd",                  [] { (void)LibQuorvelBin_NandErase(); }},
    {"interface_settings", "/etc/tevra/info",            read_interface_settings},
    {"mdadm_output",       nullptr,
        [] { run(LibQuorvelBin_MdHelper, {"md diskinfo guess", "md mdinfo md2", "md diskinfo disk1", "md diskcap"}); }},
    {"smartctl_output",    nullptr,
        [] { (void)LibQuorvelBin_GetDiskTemperature(0, "/dev/disk1"); }},
    {"nslookup_output",    nullptr,
        [] { run(LibQuorvelBin_IsDNSReachable, {"dns"}); }},
    {"power_output",       nullptr,
        [] { (void)LibQuorvelBin_IsPowerSupplyedDisk(0); }},
    {nullptr, nullptr, nullptr},
};
// clang-format on

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr int kCommands = 12;  // a file of name servers would have one run for each line
    allow_commands(kCommands);
    if (chosen_target().path != nullptr) {
        put_file(chosen_target().path, data, size);
    } else {
        set_command_output(data, size);
    }
    chosen_target().run();
    return 0;
}
