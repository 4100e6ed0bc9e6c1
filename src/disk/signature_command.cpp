#include <stdio.h>
#include <string.h>

#include "disk/signature.h"
#include "foundation/options.h"
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

// The target is the program name of its options. The leading "-" of the option letters hands words that
// are no options over as option 1, whatever POSIXLY_CORRECT says, instead of ending the options there.
bool parse_set_options(int count, char** arguments, SetOptions& options) {
    OptionVector vector(count, arguments);
    for (int letter; (letter = getopt(vector.count, vector.arguments, "-r:d:e:h")) != -1;) {
        switch (letter) {
            case 'r':
                options.raw_device = optarg;
                break;
            case 'd':
                options.in_device = optarg;
                break;
            case 'e':
                if (strcmp(optarg, "yes") == 0) options.cryptinfo = "encrypted";
                if (strcmp(optarg, "no") == 0) options.cryptinfo = "normal";
                break;
            case 1:
                break;
            case 'h':
                (void)print_usage(-1);
                return false;
            default:
                return false;
        }
    }
    return true;
}

int set_signature(const char* target, const SetOptions& options) {
    disk_signature record = {};
    if (read_own_address(record.mac_address) != 0) return -1;
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
        return parse_set_options(count - 3, argv + 3, options) ? set_signature(target, options) : -1;
    }
    if (strcmp(operation, "--help") == 0 || strcmp(operation, "-h") == 0) return print_usage(0);
    disk_signature record;
    show_signature(target, record);
    return 0;
}
