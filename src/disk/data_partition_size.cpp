#include "disk/data_partition_size.h"

#include <stdio.h>

#include "foundation/failure.h"
#include "quorvel/disk.h"

namespace quorvel {

namespace {

bool short_layout = false;

// The verdict on the last digit of a disk's gigabytes goes where its caller reports.
bool is_accepted(uint64_t blocks, FILE* report) {
    uint64_t gigabytes = gigabytes_of(blocks);
    unsigned long long sectors = blocks * 1024 / 512;
    fprintf(report, "sectors=%llu %u[GB] %u\n", sectors, static_cast<unsigned>(gigabytes),
            static_cast<unsigned>(gigabytes % 10));
    if (gigabytes % 10 <= kLastAcceptedDigit) return true;
    fputs("this disk can't used\n", report);
    return false;
}

void report_data_size(int gigabytes, FILE* report) {
    fprintf(report, "usersize=%d[GB]\n", gigabytes);
}

}  // namespace

void turn_on_short_layout() {
    short_layout = true;
}

std::optional<int> layout_data_size(uint64_t blocks) {
    uint64_t capacity = gigabytes_of(blocks);
    if (!short_layout && capacity > kLastSmallDisk && !is_accepted(blocks, stderr)) return {};
    int gigabytes = data_gigabytes(capacity, short_layout);
    report_data_size(gigabytes, stderr);
    return gigabytes;
}

}  // namespace quorvel

using namespace quorvel;

int test_usersize(const char* device) {
    if (device == nullptr) return fail(EINVAL);
    int size = data_gigabytes(0, true);
    if (!short_layout) {
        uint64_t blocks = GetPartitionBlocks(device);
        if (!is_accepted(blocks, stdout)) return fail(EINVAL);
        uint64_t capacity = gigabytes_of(blocks);
        size = static_cast<int>(capacity - capacity % 10) - 1;
    }
    report_data_size(size, stdout);
    return 0;
}
