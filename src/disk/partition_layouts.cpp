#include "disk/partition_layouts.h"

#include <string.h>

#include <iterator>

#include "disk/data_partition_size.h"
#include "foundation/appliance_files.h"

namespace quorvel {

namespace {

// clang-format off
constexpr Step kWipeStart = {files::kDdTool, "if=/dev/zero of=", " bs=1024 count=1024", Demand::kExitStatus};
constexpr Step kGptLabel = {files::kPartedTool, "-s ", " mklabel gpt", Demand::kExitStatus};

constexpr Step kSystemPartitionSteps[] = {
    // The target stands behind the label words, where parted does not take it: the step changes nothing and its failure
    // is expected.
    {files::kPartedTool, "-s mklabel msdos ", "",                   Demand::kNothing},
    kWipeStart,
    kGptLabel,
    {files::kPartedTool, "-s ", " mkpart primary ext3 0 1024M",     Demand::kExitStatus},
    {files::kPartedTool, "-s ", " mkpart primary ext3 1024M 6144M", Demand::kExitStatus},
    // Two partitions that only hold their numbers.
    {files::kPartedTool, "-s ", " mkpart primary ext3 6144M 6144M", Demand::kExitStatus},
    {files::kPartedTool, "-s ", " mkpart primary ext3 6144M 6144M", Demand::kExitStatus},
    {files::kPartedTool, "-s ", " mkpart primary ext3 6144M 7168M", Demand::kExitStatus},
};

constexpr Step kBootFlagSteps[] = {{files::kPartedTool, "-s ", " toggle 3 bios_grub", Demand::kExitStatus}};

// An MBR label is written by the command that makes the partition.
constexpr Step kUsbLabelSteps[] = {kWipeStart, kGptLabel};

// What a USB partition is marked for, by file-system word: parted's name of it, and the MBR type in fdisk's keystrokes.
// The last row is any other word.
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

}  // namespace

const std::span<const Step> kSystemPartitions = kSystemPartitionSteps;
const std::span<const Step> kBootFlag = kBootFlagSteps;

bool is_gpt_word(const char* label) {
    return label != nullptr && strcmp(label, "gpt") == 0;
}

std::span<const Step> usb_label_steps(bool gpt) {
    return {kUsbLabelSteps, std::size(kUsbLabelSteps) - (gpt ? 0 : 1)};
}

Text<kCommandSize> command_of(const Step& step, const char* target) {
    return Text<kCommandSize>("%s %s%s%s", step.tool, step.before_target, ShellWord(target).c_str(),
                              step.behind_target);
}

Text<kCommandSize> data_partition_command(const char* target, int gigabytes) {
    return Text<kCommandSize>("%s -s %s mkpart primary ext3 %dM %dG", files::kPartedTool, ShellWord(target).c_str(),
                              kDataStart, gigabytes);
}

Text<kCommandSize> usb_partition_command(const char* target, uint64_t blocks, const char* filesystem, bool gpt) {
    const UsbFileSystem& row = usb_file_system(filesystem);
    ShellWord device(target);
    if (gpt) {
        return Text<kCommandSize>("%s -s %s mkpart primary %s 0 %llu", files::kPartedTool, device.c_str(),
                                  row.parted_name, static_cast<unsigned long long>(blocks * 1024 / 1000000));
    }
    // A new primary partition 1 from the first to the last sector, its type, a print and a write.
    return Text<kCommandSize>("echo -e \"n\np\n1\n\n\n%sp\nw\n\" | %s %s", row.type_keys, files::kFdiskTool,
                              device.c_str());
}

}  // namespace quorvel
