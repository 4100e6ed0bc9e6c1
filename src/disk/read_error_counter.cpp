#include <stdio.h>
#include <string.h>

#include "disk/set_options.h"
#include "disk/signature_device.h"
#include "foundation/failure.h"
#include "foundation/numbers.h"
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

[[nodiscard]] int get_counter(const char* target) {
    char digits[kDigits + 1] = {};
    if (!read_signature_device(target, kOffset, digits, kDigits, 1)) return kBadTarget;
    printf("%d\n", leading_int(digits));
    return 0;
}

using Counter = char[kDigits + 1];

[[nodiscard]] int take_option(Counter& counter, int letter, const char* argument) {
    switch (letter) {
        case 'c':
            memset(counter, 0, sizeof counter);
            return 0;
        case 'n':
            if (strlen(argument) > kDigits) return fail(EINVAL, kBadOption);
            strncpy(counter, argument, sizeof counter);
            return 0;
        default:
            return print_usage(fail(EINVAL, kBadOption));
    }
}

// Operation and target are no options, wherever they stand.
[[nodiscard]] int set_counter(const char* target, int count, char** arguments) {
    Counter counter = {};
    int result = take_options(count, arguments, "-cn:", kBadOption, [&counter](int letter, const char* argument) {
        return take_option(counter, letter, argument);
    });
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
