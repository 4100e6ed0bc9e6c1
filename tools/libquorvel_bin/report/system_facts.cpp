// Which appliance this is: platform, firmware, kernel, what the model takes, the front panel's line, the spool.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/look.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/gather.h"
#include "report/sources.h"

namespace report {

namespace {

using quorvel::Text;

constexpr char kNotSet[] = "the model's settings do not tell it";

void gather_identity(SystemFacts& system) {
    char name[128] = "";
    set_unless_empty(system.platform, LibQuorvelBin_GetPlatformStr(name, sizeof name) != nullptr ? name : "",
                     "none of the known platforms");
    const bool named = LibQuorvelBin_GetSeriesName(name, sizeof name) != nullptr;
    set_unless_empty(system.series, named ? name : "", kNotSet);
    char series[128] = "";
    (void)LibQuorvelBin_GetConfValInStringByKey(series, sizeof series, "PRODUCT_SERIES");
    set_unless_empty(system.product_series, series, kNotSet);
    char host[256] = "";
    (void)get_StringbyKey(quorvel::files::kInfo, "HOSTNAME", host, sizeof host);
    set_unless_empty(system.hostname, host, "no HOSTNAME in /etc/tevra/info");
}

void gather_firmware(SystemFacts& system) {
    struct firm_info info = {};
    (void)Firminfo_GetFirmInfo(&info);
    const struct {
        Words* words;
        const char* text;
    } rows[] = {
        {&system.product_name,         info.product_name},
        {&system.product_id,           info.product_id  },
        {&system.firmware_version,     info.version     },
        {&system.firmware_sub_version, info.sub_version },
        {&system.firmware_build_date,  info.build_date  },
    };
    for (const auto& row : rows)
        set_unless_empty(*row.words, row.text, "no firmware file tells it");
}

void gather_kernel(SystemFacts& system) {
    struct os_version version = {};
    if (LibQuorvelBin_GetOsVer(&version) != 0) {
        set_unknown(system.kernel, "/proc/sys/kernel/osrelease cannot be read");
        return;
    }
    const auto part = [&version](int shift) { return static_cast<unsigned>(version.version >> shift & 0xffff); };
    set(system.kernel, Text<192>("%u.%u.%u.%u%s%s", part(48), part(32), part(16), part(0),
                                 version.suffix[0] != '\0' ? "-" : "", version.suffix)
                           .c_str());
}

int code_of_status(std::string_view word) {
    for (const diskinfo_code& row : diskinfo_tbl) {
        if (word == row.name) return row.code;
    }
    return diskinfo_tbl[std::size(diskinfo_tbl) - 1].code;
}

int print_panel(int, char**) {
    return LibQuorvelBin_PrintLcdString();
}

template <size_t Rows>
void fill_mode_table(diskinfo_code (&table)[Rows], const char* kind, const FileText& status,
                     bool (*is_listed)(size_t index)) {
    for (size_t i = 0; i < Rows; i++) {
        const Text<32> name("%s%zu", kind, i + 1);
        std::string_view word;
        if (!is_listed(i) || !find_setting(status.view(), name.c_str(), word)) continue;
        table[i].code = code_of_status(word);
        quorvel::copy_text(table[i].name, sizeof table[i].name, name.c_str());
    }
}

// As the inventory has it: an array with a device node, a disk of a slot that the model has.
bool is_listed_array(size_t index) {
    char device[64] = "";
    const Text<64> feature("DEVICE_MD%zu_REAL", index + 1);
    if (LibQuorvelBin_GetConfValInStringByKey(device, sizeof device - 1, feature.c_str()) != 0) return false;
    return access(Text<128>(quorvel::files::kDevice, device).c_str(), R_OK | W_OK) == 0;
}

bool is_listed_disk(size_t index) {
    return static_cast<int>(index) < LibQuorvelBin_GetMaxDiskNum();
}

void gather_panel(SystemFacts& system, const Quiet& quiet) {
    const FileText status = read_file(quorvel::files::kDiskInfo);
    if (status.reason != nullptr) return set_unknown(system.front_panel, status.reason);
    fill_mode_table(array_mode_tbl, "array", status, is_listed_array);
    fill_mode_table(disk_mode_tbl, "disk", status, is_listed_disk);
    int result = 0;
    const quorvel::Heap<char> line = answer_of(quiet, print_panel, {}, result);
    const bool shown = line != nullptr && strncmp(line.get(), "HD", 2) == 0 && strcmp(line.get(), "HD Unknown\n") != 0;
    set_unless_empty(system.front_panel, shown ? line.get() : "", "the front panel has no line for these disks");
}

// The file system that holds it is asked by its mount point: that reads from no disk.
void gather_spool_sizes(SystemFacts& system, const char* mount_point) {
    struct statfs sizes = {};
    if (IsMounted(mount_point) != 1 || !quorvel::read_file_system(mount_point, sizes)) {
        set_unknown(system.spool_size_bytes, "the spool is not mounted");
        set_unknown(system.spool_free_bytes, "the spool is not mounted");
        return;
    }
    const auto unit = static_cast<uint64_t>(sizes.f_frsize);
    set(system.spool_size_bytes, static_cast<int64_t>(sizes.f_blocks * unit));
    set(system.spool_free_bytes, static_cast<int64_t>(sizes.f_bavail * unit));
}

void gather_spool(SystemFacts& system) {
    char disk[32] = "";
    char directory[2112] = "";
    const bool usable = LibQuorvelBin_GetAvailableDiskInfo(disk) == 1;
    const char* found = usable ? LibQuorvelBin_GetSpoolDir(directory, sizeof directory) : nullptr;
    set_unless_empty(system.spool_directory, found != nullptr ? found : "", "no usable disk has a spool directory");
    if (usable && disk[0] != '\0') return gather_spool_sizes(system, Text<64>("/mnt/%s", disk).c_str());
    char* end = found != nullptr ? strrchr(directory, '/') : nullptr;
    if (end != nullptr) *end = '\0';
    gather_spool_sizes(system, directory[0] != '\0' ? directory : "no usable disk");
}

}  // namespace

void gather_system(Facts& facts, const Quiet& quiet) {
    SystemFacts& system = facts.system;
    gather_identity(system);
    gather_firmware(system);
    gather_kernel(system);
    set_unless_negative(system.max_disks, LibQuorvelBin_GetMaxDiskNum(), kNotSet);
    set_unless_negative(system.max_usb_disks, LibQuorvelBin_GetMaxUsbdiskNum(), kNotSet);
    set_unless_negative(system.max_arrays, LibQuorvelBin_GetMaxArrayNum(), kNotSet);
    gather_panel(system, quiet);
    gather_spool(system);
    set(system.bonding, LibQuorvelBin_IsBondingMode() == 1);
}

}  // namespace report
