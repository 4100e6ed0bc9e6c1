#include <stdio.h>
#include <string.h>

#include "disk/set_options.h"
#include "disk/signature.h"
#include "foundation/failure.h"
#include "foundation/text.h"

using namespace quorvel;

namespace {

constexpr char kUsage[] =
    "libquorvel_bin disk_signature [ope] [target_device] (options)\n"
    "ope           : set / get\n"
    "target_device : /dev/disk1, /dev/disk2, /dev/disk3 ....\n"
    "option        : -r raw device name(disk1, disk2, etc.\n"
    "              : -d device used in (disk1, disk2, array1, array2, etc.\n"
    "              : -e yes / no. encrypted in -d device\n";

int print_usage(int result) {
    fputs(kUsage, stdout);
    return result;
}

struct SetOptions {
    const char* raw_device = "";
    const char* in_device = "";
    const char* cryptinfo = "";
};

[[nodiscard]] int take_option(SetOptions& options, int letter, const char* argument) {
    switch (letter) {
        case 'r':
            options.raw_device = argument;
            return 0;
        case 'd':
            options.in_device = argument;
            return 0;
        case 'e':
            if (strcmp(argument, "yes") == 0) options.cryptinfo = "encrypted";
            if (strcmp(argument, "no") == 0) options.cryptinfo = "normal";
            return 0;
        case 'h':
            return print_usage(fail(EINVAL));
        default:
            return fail(EINVAL);
    }
}

[[nodiscard]] int set_signature(const char* target, const SetOptions& options) {
    std::optional<MacText> address = own_address();
    if (!address) return -1;
    disk_signature record = {};
    copy_text(record.mac_address, sizeof record.mac_address, address->c_str());
    record.sig_ver.major = 1;
    record.hdr_len = offsetof(disk_signature, raw_device);
    copy_text(record.raw_device, sizeof record.raw_device, options.raw_device);
    copy_text(record.in_device, sizeof record.in_device, options.in_device);
    copy_text(record.cryptinfo, sizeof record.cryptinfo, options.cryptinfo);
    write_signature(target, record);
    return 0;
}

}  // namespace

int DiskSignature(int argc, char** argv) {
    int count = argument_count(argc, argv);
    if (count < 4) return print_usage(0);
    const char* operation = argv[2];
    const char* target = argv[3];
    if (strcmp(operation, "set") == 0) {
        SetOptions options;
        // The target is the program name of its options.
        int result = take_options(count - 3, argv + 3, "-r:d:e:h", -1, [&options](int letter, const char* argument) {
            return take_option(options, letter, argument);
        });
        return result == 0 ? set_signature(target, options) : -1;
    }
    if (strcmp(operation, "--help") == 0 || strcmp(operation, "-h") == 0) return print_usage(0);
    (void)show_signature(target);  // a failure is only printed
    return 0;
}
