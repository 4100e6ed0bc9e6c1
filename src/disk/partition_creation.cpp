#include <errno.h>
#include <stdio.h>

#include "disk/data_partition_size.h"
#include "disk/partition_layouts.h"
#include "disk/partition_steps.h"
#include "foundation/child.h"
#include "foundation/failure.h"
#include "quorvel/disk.h"

using namespace quorvel;

namespace {

// The line every creation begins with; false, with its own line, when the device has no size to read.
[[nodiscard]] bool report_size(const char* device, const Target& target, const char* unit, char closing) {
    int reason = errno;
    uint64_t bytes = target.blocks * 1024;
    printf("%s total %s=%llu bytes=%llu %llu[GB%c\n", device, unit, static_cast<unsigned long long>(target.blocks),
           static_cast<unsigned long long>(bytes), static_cast<unsigned long long>(bytes >> 30), closing);
    if (target.blocks == 0) printf("device[%s] access fail.\n", device);
    errno = reason;
    return target.blocks != 0;
}

int report_failed_layout(const char* layout, FILE* report) {
    int reason = errno;
    fprintf(report, "%s:fail.\n", layout);
    return fail(reason);
}

[[nodiscard]] bool make_data_partition(const Target& target, int gigabytes) {
    Text<kCommandSize> command = data_partition_command(target.path, gigabytes);
    puts(command.c_str());
    return run_layout_command(command, Demand::kExitStatusAndOutput);
}

[[nodiscard]] int lay_out_internal_disk(const Target& target) {
    static constexpr char kLayout[] = "CreatePartitionHdd_sub";
    HeldSignals until_done;
    if (!run_steps(kSystemPartitions, target)) return report_failed_layout(kLayout, stderr);
    std::optional<int> gigabytes = layout_data_size(target.blocks);
    if (!gigabytes) return fail(EINVAL);
    if (!make_data_partition(target, *gigabytes)) return report_failed_layout(kLayout, stderr);
    printf("toggle bios_grub set to %s3\n", target.path);
    if (!run_steps(kBootFlag, target)) printf("%s:toggle 3 bios_grub failed. Maybe kernel warning.\n", kLayout);
    return 0;
}

[[nodiscard]] int lay_out_usb(const Target& target, const char* filesystem, bool gpt) {
    HeldSignals until_done;
    // The size may have changed since: it is what the partition gets.
    uint64_t blocks = gpt ? GetPartitionBlocks(target.path) : 0;
    bool done =
        run_steps(usb_label_steps(gpt), target) &&
        run_layout_command(usb_partition_command(target.path, blocks, filesystem, gpt), Demand::kExitStatusAndOutput);
    return done ? 0 : report_failed_layout(gpt ? "CreatePartitionUsb_sub_GPT" : "CreatePartitionUsb_sub_MBR", stdout);
}

}  // namespace

int create_partition(const char* device) {
    if (device == nullptr) return fail(EINVAL);
    Target target = choose_target(device);
    return report_size(device, target, "blocks", ']') ? lay_out_internal_disk(target) : -1;
}

int create_short_partition(const char* device) {
    turn_on_short_layout();
    return create_partition(device);
}

int create_usb_partition(const char* device, const char* filesystem, const char* label) {
    if (device == nullptr) return fail(EINVAL);
    Target target = choose_target(device);
    return report_size(device, target, "sectors", '}') ? lay_out_usb(target, filesystem, is_gpt_word(label)) : -1;
}
