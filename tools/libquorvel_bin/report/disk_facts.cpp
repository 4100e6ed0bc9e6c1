// What is known of each disk: presence and power, size, temperature, the record at its start, its array superblock.
//
// First it is told which disks sleep; those are left alone.
#include <errno.h>
#include <fcntl.h>
#include <linux/hdreg.h>
#include <stdio.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/disk_tools.h"
#include "report/gather.h"
#include "report/sources.h"

namespace report {

namespace {

using quorvel::Text;

constexpr char kNoDisk[] = "no disk";
constexpr char kAsleep[] = "the disk sleeps";

bool is_internal(const DiskFacts& disk) {
    return disk.kind == DISK_PATH_INTERNAL && is_known(disk.slot);
}

void gather_presence(DiskFacts& disk) {
    if (is_internal(disk)) {
        set(disk.present, LibQuorvelBin_IsConnectedDisk(static_cast<int>(disk.slot.value) - 1) == 1);
    } else {
        set(disk.present, is_known(disk.device));
    }
}

void gather_status(DiskFacts& disk, const FileText& status) {
    if (!is_internal(disk)) return set_unknown(disk.status, "kept for internal disks only");
    std::string_view word;
    const bool told = find_setting(status.view(), text_of(disk.name), word);
    if (told) return set(disk.status, word);
    set_unknown(disk.status, status.reason != nullptr ? status.reason : "not in the disk status file");
}

// The node with the logical name, as the library's commands take it, or else the kernel's.
Text<160> node_of(const DiskFacts& disk) {
    Text<160> node(quorvel::files::kDevice, is_known(disk.name) ? text_of(disk.name) : text_of(disk.device));
    if (is_known(disk.name) && !quorvel::path_exists(node.c_str()))
        node = Text<160>(quorvel::files::kDevice, text_of(disk.device));
    return node;
}

// Asks the drive for its power mode, which wakes none. A plain file does not sleep.
void gather_sleep(DiskFacts& disk, const char* node) {
    const quorvel::Descriptor device(open(node, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!device || fstat(device.number, &status) != 0) return set_unknown(disk.asleep, strerror(errno));
    if (!S_ISBLK(status.st_mode)) return set(disk.asleep, false);
    unsigned char mode[4] = {WIN_CHECKPOWERMODE1, 0, 0, 0};
    constexpr unsigned char kStandby = 0;
    if (ioctl(device.number, HDIO_DRIVE_CMD, mode) == 0) return set(disk.asleep, mode[2] == kStandby);
    set_unknown(disk.asleep, "the drive does not tell its power mode");
}

void gather_kernel_facts(DiskFacts& disk) {
    const char* device = text_of(disk.device);
    set_from(disk.size_bytes, Text<128>("/sys/block/%s/size", device).c_str(), 512);
    const uint64_t blocks = is_known(disk.size_bytes) ? 0 : GetPartitionBlocks(device);
    if (blocks > 0 && blocks < INT64_MAX / 1024) set(disk.size_bytes, static_cast<int64_t>(blocks * 1024));
    set_from(disk.model, Text<128>("/sys/block/%s/device/model", device).c_str());
    set(disk.lvm, LibQuorvelBin_IsLvmVolume(device) == 1);
}

// Four bytes of a header, then the text.
void gather_serial(DiskFacts& disk) {
    char page[256] = "";
    const Text<128> path("/sys/block/%s/device/vpd_pg80", text_of(disk.device));
    const quorvel::Descriptor file = quorvel::open_for_reading(path.c_str());
    const ssize_t length = file ? quorvel::read_fully(file.number, page, sizeof page) : -1;
    const std::string_view serial =
        length > 4 ? without_blanks({page + 4, strnlen(page + 4, static_cast<size_t>(length) - 4)}) : "";
    set_unless_empty(disk.serial, serial, "the kernel does not tell it");
}

// The sensor that the kernel keeps for a disk, in thousandths of a degree.
void gather_sensor(DiskFacts& disk) {
    const Text<128> folder("/sys/block/%s/device/hwmon", text_of(disk.device));
    const quorvel::Directory sensors = quorvel::open_directory(folder.c_str());
    while (const struct dirent* entry = sensors ? readdir(sensors.get()) : nullptr) {
        if (quorvel::is_dot_entry(entry->d_name)) continue;
        Number thousandths;
        set_from(thousandths, Text<512>("%s/%s/temp1_input", folder.c_str(), entry->d_name).c_str());
        if (is_known(thousandths)) return set(disk.temperature_celsius, thousandths.value / 1000);
    }
    set_unknown(disk.temperature_celsius, "the kernel has no sensor for it");
}

template <size_t Size>
std::string_view field_of(const char (&field)[Size]) {
    return {field, strnlen(field, Size)};
}

void gather_signature(DiskFacts& disk, const char* node) {
    struct disk_signature record = {};
    static constexpr char kNone[] = "no signature on the disk";
    const bool loaded = LibQuorvelBin_LoadDiskSignature(node, &record) == 0;
    const bool valid = loaded && record.sig_ver.major == 1 && record.hdr_len == 32;
    const char* reason = loaded ? kNone : "the disk cannot be read";
    for (Words* words : {&disk.signature_version, &disk.signature_disk, &disk.signature_mac, &disk.signature_use,
                         &disk.signature_encryption})
        set_unknown(*words, reason);
    set_unknown(disk.mine, reason);
    set_unknown(disk.read_errors, reason);
    if (!valid) return;
    set(disk.signature_version, Text<32>("%u.%02u", record.sig_ver.major, record.sig_ver.minor).c_str());
    set(disk.signature_disk, field_of(record.raw_device));
    set(disk.signature_mac, field_of(record.mac_address));
    set(disk.signature_use, field_of(record.in_device));
    set(disk.signature_encryption, field_of(record.cryptinfo));
    const int mine = IsMyDisk(node);
    if (mine != -1) set(disk.mine, mine == 1);
    if (mine == -1) set_unknown(disk.mine, "eth0 has no address");
}

void gather_read_errors(DiskFacts& disk, const char* node, const Quiet& quiet) {
    if (!is_known(disk.signature_version)) return;
    int result = 0;
    const quorvel::Heap<char> count =
        answer_of(quiet, DiskReadErrorCnt, {"", "disk_readerrorcnt", "get", node}, result);
    int64_t errors = 0;
    const bool told = result == 0 && count != nullptr && to_number(without_blanks(count.get()), errors);
    set_unless_negative(disk.read_errors, told ? errors : -1, "the disk cannot be read");
}

void set_contents_unknown(DiskFacts& disk, const char* reason) {
    for (Words* words : {&disk.signature_version, &disk.signature_disk, &disk.signature_mac, &disk.signature_use,
                         &disk.signature_encryption, &disk.superblock_uuid, &disk.superblock_level})
        set_unknown(*words, reason);
    for (Number* number :
         {&disk.read_errors, &disk.superblock_minor, &disk.superblock_raid_devices, &disk.superblock_total_devices})
        set_unknown(*number, reason);
    set_unknown(disk.mine, reason);
}

void set_all_unknown(DiskFacts& disk, const char* reason) {
    set_contents_unknown(disk, reason);
    for (Words* words : {&disk.model, &disk.serial})
        set_unknown(*words, reason);
    for (Number* number : {&disk.size_bytes, &disk.temperature_celsius})
        set_unknown(*number, reason);
    set_unknown(disk.asleep, reason);
    set_unknown(disk.lvm, reason);
}

void gather_contents(DiskFacts& disk, const Request& request, const Quiet& quiet) {
    if (!is_known(disk.device)) return;
    if (!request.contents && !is_known(disk.asleep)) return set_contents_unknown(disk, "the disk may sleep");
    if (is_known(disk.asleep) && disk.asleep.value) return set_contents_unknown(disk, kAsleep);
    const auto node = node_of(disk);
    gather_signature(disk, node.c_str());
    gather_read_errors(disk, node.c_str(), quiet);
}

void gather_outside(DiskFacts& disk, const FileText& status) {
    gather_presence(disk);
    gather_status(disk, status);
    set_unknown(disk.powered, is_internal(disk) ? kNotAsked : "told for internal bays only");
    set_unknown(disk.array, is_known(disk.device) ? "in no running array" : kNoDisk);
    if (!is_known(disk.device)) return set_all_unknown(disk, kNoDisk);
    gather_kernel_facts(disk);
    gather_serial(disk);
    gather_sensor(disk);
    gather_sleep(disk, node_of(disk).c_str());
}

}  // namespace

void gather_disks(Facts& facts, const Request& request, const Quiet& quiet) {
    const FileText status = read_file(quorvel::files::kDiskInfo);
    for (DiskFacts& disk : facts.disks)
        gather_outside(disk, status);
    ask_drives(facts, request);
    for (DiskFacts& disk : facts.disks)
        gather_contents(disk, request, quiet);
    ask_superblocks(facts, request);
}

}  // namespace report
