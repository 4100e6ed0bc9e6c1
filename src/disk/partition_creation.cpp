#include <stdio.h>

#include "disk/data_partition_size.h"
#include "disk/partition_layouts.h"
#include "disk/partition_steps.h"
#include "quorvel/disk.h"

using namespace quorvel;

namespace {

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
    Text<kCommandSize> command = data_partition_command(target_device(), gigabytes);
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

int lay_out_usb(uint64_t blocks, const char* filesystem, bool gpt) {
    bool done = run_steps(usb_label_steps(gpt)) &&
                run_layout_command(usb_partition_command(target_device(), blocks, filesystem, gpt),
                                   Demand::kExitStatusAndOutput);
    return done ? 0 : report_failed_layout(gpt ? "CreatePartitionUsb_sub_GPT" : "CreatePartitionUsb_sub_MBR", stdout);
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
    return lay_out_usb(blocks, filesystem, is_gpt_word(label));
}
