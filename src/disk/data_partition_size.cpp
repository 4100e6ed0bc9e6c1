#include "disk/data_partition_size.h"

#include <stdio.h>

#include "quorvel/disk.h"

namespace quorvel {

namespace {

constexpr uint64_t kBlock = 1024;
constexpr uint64_t kSector = 512;
constexpr uint64_t kGigabyte = 1000000000;

constexpr int kShortDataSize = 17;
constexpr uint64_t kSystemSize = 8;       // gigabytes set aside for the system partitions
constexpr uint64_t kLastSmallDisk = 249;  // gigabytes; larger disks come in steps of ten
constexpr uint64_t kLastAcceptedDigit = 6;

bool short_layout = false;

uint64_t gigabytes_of(uint64_t blocks) {
    return blocks * kBlock / kGigabyte;
}

// The verdict on the last digit of a disk's gigabytes goes where its caller reports.
bool is_accepted(uint64_t blocks, FILE* report) {
    uint64_t gigabytes = gigabytes_of(blocks);
    unsigned long long sectors = blocks * kBlock / kSector;
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

bool layout_data_size(uint64_t blocks, int& gigabytes) {
    uint64_t capacity = gigabytes_of(blocks);
    if (short_layout) {
        gigabytes = kShortDataSize;
    } else if (capacity <= kLastSmallDisk) {
        gigabytes = static_cast<int>(capacity / 5 * 5 - kSystemSize);
    } else {
        if (!is_accepted(blocks, stderr)) return false;
        gigabytes = static_cast<int>(capacity - kSystemSize - capacity % 10);
    }
    report_data_size(gigabytes, stderr);
    return true;
}

}  // namespace quorvel

using namespace quorvel;

int test_usersize(const char* device) {
    if (device == nullptr) return -1;
    int size = kShortDataSize;
    if (!short_layout) {
        uint64_t blocks = GetPartitionBlocks(device);
        if (!is_accepted(blocks, stdout)) return -1;
        uint64_t capacity = gigabytes_of(blocks);
        size = static_cast<int>(capacity - capacity % 10) - 1;
    }
    report_data_size(size, stdout);
    return 0;
}
