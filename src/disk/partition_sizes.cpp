#include <stdio.h>

#include <optional>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/look.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "quorvel/disk.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr uint64_t kUnknownSize = ~uint64_t{0};

enum SizeMode : int { kTotal = 1, kFree = 2, kUsed = 3 };

std::optional<struct statfs> facts_of(const char* mount_point) {
    struct statfs facts;
    if (mount_point == nullptr) errno = EINVAL;
    if (mount_point == nullptr || !read_file_system(mount_point, facts)) return {};
    return facts;
}

// The counts are 64-bit on every machine (large-file interface); so are the products.
uint64_t in_bytes(const struct statfs& facts, uint64_t blocks) {
    return static_cast<uint64_t>(facts.f_bsize) * blocks;
}

uint64_t file_system_size(const char* mount_point, SizeMode mode) {
    const auto facts = facts_of(mount_point);
    if (!facts) return kUnknownSize;
    switch (mode) {
        case kTotal:
            return in_bytes(*facts, facts->f_blocks);
        case kFree:
            return in_bytes(*facts, facts->f_bavail);
        case kUsed:
            break;
    }
    return in_bytes(*facts, facts->f_blocks - facts->f_bavail);
}

uint64_t no_blocks(int reason) {
    errno = reason;
    return 0;
}

}  // namespace

uint64_t GetPartitionBlocks(const char* device) {
    if (device == nullptr) return no_blocks(EINVAL);
    char line[255 + 2];  // grep_file takes two characters less than its buffer holds
    if (grep_file(files::kPartitions, last_component(device), line, sizeof line) == nullptr)
        return no_blocks(path_exists(files::kPartitions) ? ENODEV : ENOENT);
    std::optional<uint64_t> blocks = scanned_third(line);
    return blocks ? *blocks : no_blocks(EBADMSG);
}

int GetMountedFsInfo(const char* mount_point, struct mounted_fs_info* info) {
    if (info == nullptr) return fail(EINVAL);
    const auto facts = facts_of(mount_point);
    if (!facts) return -1;
    info->f_type = static_cast<uint32_t>(facts->f_type);
    info->total_size = in_bytes(*facts, facts->f_blocks);
    info->free_bytes = in_bytes(*facts, facts->f_bavail);
    printf("f_type=0x%lx\n", static_cast<unsigned long>(info->f_type));
    printf("total_size=%llu free_byes=%llu\n", static_cast<unsigned long long>(info->total_size),
           static_cast<unsigned long long>(info->free_bytes));
    return 0;
}

uint64_t LibQuorvelBin_GetPartitionSize(const char* mount_point) {
    return file_system_size(mount_point, kTotal);
}

uint64_t LibQuorvelBin_GetPartitionFreeSize(const char* mount_point) {
    return file_system_size(mount_point, kFree);
}

uint64_t LibQuorvelBin_GetPartitionUsedSize(const char* mount_point) {
    return file_system_size(mount_point, kUsed);
}
