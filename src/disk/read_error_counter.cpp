#include <stdio.h>
#include <string.h>

#include "disk/signature_device.h"
#include "foundation/numbers.h"
#include "foundation/options.h"
#include "quorvel/disk.h"

using namespace quorvel;

namespace {

constexpr off_t kOffset = 86;
constexpr size_t kDigits = 3;
constexpr int kBadOption = 1;
constexpr int kBadTarget = 2;

constexpr char kUsage[] =
    "libquorvel_bin disk_readerrorcnt [ope] [cnt]\n"
    "ope           : set / get\n"
    "option        : -c isk lead error is clear(set only)\n"
    "option        : -n Number of set disk lead errors(set only)\n";

int print_usage(int result) {
    fputs(kUsage, stdout);
    return result;
}

int get_counter(const char* target) {
    char digits[kDigits + 1] = {};
    if (!read_signature_device(target, kOffset, digits, kDigits, 1)) return kBadTarget;
    printf("%d\n", leading_int(digits));
    return 0;
}

// Operation and target are no options, wherever they stand: the leading "-" of the option letters hands
// them over as option 1, whatever POSIXLY_CORRECT says.
int parse_set_options(int count, char** arguments, char (&counter)[kDigits + 1]) {
    OptionVector vector(count, arguments);
    for (int letter; (letter = getopt(vector.count, vector.arguments, "-cn:")) != -1;) {
        switch (letter) {
            case 'c':
                memset(counter, 0, sizeof counter);
                break;
            case 'n':
                if (strlen(optarg) > kDigits) return kBadOption;
                strncpy(counter, optarg, sizeof counter);
                break;
            case 1:
                break;
            default:
                return print_usage(kBadOption);
        }
    }
    return 0;
}

int set_counter(const char* target, int count, char** arguments) {
    char counter[kDigits + 1] = {};
    int result = parse_set_options(count, arguments, counter);
    if (result != 0) return result;
    return write_signature_device(target, kOffset, counter, sizeof counter) ? 0 : kBadTarget;
}

}  // namespace

int DiskReadErrorCnt(int argc, char** argv) {
    int count = argument_count(argc, argv);
    if (count < 3) return print_usage(0);
    const char* operation = argv[2];
    const char* target = count > 3 ? argv[3] : "";  // a path that never opens
    if (strcmp(operation, "get") == 0) return get_counter(target);
    if (strcmp(operation, "set") == 0) return set_counter(target, count - 1, argv + 1);
    return print_usage(0);
}
