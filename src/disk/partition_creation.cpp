#include <stdio.h>
#include <string.h>

#include "disk/data_partition_size.h"
#include "disk/partition_steps.h"
#include "quorvel/disk.h"

using namespace quorvel;

namespace {

// clang-format off
constexpr Step kSystemPartitions[] = {
    // The target stands behind the label words, where parted does not take it: the step changes nothing
    // and its failure is expected.
    {"parted -s mklabel msdos ", "",                   Demand::kNothing},
    kWipeStart,
    kGptLabel,
    {"parted -s ", " mkpart primary ext3 0 1024M",     Demand::kExitStatus},
    {"parted -s ", " mkpart primary ext3 1024M 6144M", Demand::kExitStatus},
    // Two partitions that only hold their numbers.
    {"parted -s ", " mkpart primary ext3 6144M 6144M", Demand::kExitStatus},
    {"parted -s ", " mkpart primary ext3 6144M 6144M", Demand::kExitStatus},
    {"parted -s ", " mkpart primary ext3 6144M 7168M", Demand::kExitStatus},
};

constexpr Step kBootFlag[] = {{"parted -s ", " toggle 3 bios_grub", Demand::kExitStatus}};

// What a USB partition is marked for, by file-system word: parted's name of it, and the MBR type in
// fdisk's keystrokes. The last row is any other word.
struct UsbFileSystem { const char* word; const char* parted_name; const char* type_keys; };
constexpr UsbFileSystem kUsbFileSystems[] = {
    {"fat",   "fat",  "t\nc\n"},
    {"vfat",  "fat",  "t\nc\n"},
    {"xfs",   "xfs",  "t\n83\n"},
    {nullptr, "ext3", "t\n83\n"},
};
// clang-format on

const UsbFileSystem& usb_file_system(const char* word) {
    const UsbFileSystem* row = kUsbFileSystems;
    while (row->word != nullptr && (word == nullptr || strcmp(row->word, word) != 0))
        row++;
    return *row;
}

// The line every creation begins with; false, with its own line, when the device has no size to read.
bool report_size(const char* device, uint64_t blocks, const char* unit, char closing) {
    uint64_t bytes = blocks * 1024;
    printf("%s total %s=%llu bytes=%llu %llu[GB%c\n", device, unit, static_cast<unsigned long long>(blocks),
           static_cast<unsigned long long>(bytes), static_cast<unsigned long long>(bytes >> 30), closing);
    if (blocks == 0) printf("device[%s] access fail.\n", device);
    return blocks != 0;
}

int report_failed_layout(const char* layout, FILE* report) {
    fprintf(report, "%s:fail.\n", layout);
    return -1;
}

bool make_data_partition(int gigabytes) {
    Text<kCommandSize> command("parted -s %s mkpart primary ext3 %dM %dG", ShellWord(target_device()).c_str(), 7168,
                               gigabytes);
    puts(command.c_str());
    return run_layout_command(command, Demand::kExitStatusAndOutput);
}

int lay_out_internal_disk(uint64_t blocks) {
    static constexpr char kLayout[] = "CreatePartitionHdd_sub";
    if (!run_steps(kSystemPartitions)) return report_failed_layout(kLayout, stderr);
    int gigabytes;
    if (!layout_data_size(blocks, gigabytes)) return -1;
    if (!make_data_partition(gigabytes)) return report_failed_layout(kLayout, stderr);
    printf("toggle bios_grub set to %s3\n", target_device());
    if (!run_steps(kBootFlag)) printf("%s:toggle 3 bios_grub failed. Maybe kernel warning.\n", kLayout);
    return 0;
}

int lay_out_usb_gpt(uint64_t blocks, const UsbFileSystem& file_system) {
    static constexpr Step kLabel[] = {kWipeStart, kGptLabel};
    Text<kCommandSize> partition("parted -s %s mkpart primary %s 0 %llu", ShellWord(target_device()).c_str(),
                                 file_system.parted_name, static_cast<unsigned long long>(blocks * 1024 / 1000000));
    bool done = run_steps(kLabel) && run_layout_command(partition, Demand::kExitStatusAndOutput);
    return done ? 0 : report_failed_layout("CreatePartitionUsb_sub_GPT", stdout);
}

int lay_out_usb_mbr(const UsbFileSystem& file_system) {
    static constexpr Step kWipe[] = {kWipeStart};
    // A new primary partition 1 from the first to the last sector, its type, a print and a write.
    Text<kCommandSize> partition("echo -e \"n\np\n1\n\n\n%sp\nw\n\" | fdisk %s", file_system.type_keys,
                                 ShellWord(target_device()).c_str());
    bool done = run_steps(kWipe) && run_layout_command(partition, Demand::kExitStatusAndOutput);
    return done ? 0 : report_failed_layout("CreatePartitionUsb_sub_MBR", stdout);
}

}  // namespace

int create_partition(const char* device) {
    if (device == nullptr) return -1;
    uint64_t blocks = choose_target(device);
    return report_size(device, blocks, "blocks", ']') ? lay_out_internal_disk(blocks) : -1;
}

int create_short_partition(const char* device) {
    turn_on_short_layout();
    return create_partition(device);
}

int create_usb_partition(const char* device, const char* filesystem, const char* label) {
    if (device == nullptr) return -1;
    uint64_t blocks = choose_target(device);
    if (!report_size(device, blocks, "sectors", '}')) return -1;
    const UsbFileSystem& row = usb_file_system(filesystem);
    bool gpt = label != nullptr && strcmp(label, "gpt") == 0;
    return gpt ? lay_out_usb_gpt(blocks, row) : lay_out_usb_mbr(row);
}
