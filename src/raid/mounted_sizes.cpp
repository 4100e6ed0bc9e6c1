// What is mounted of an array or disk, and how full it is.
#include "foundation/appliance_files.h"
#include "quorvel/disk.h"
#include "raid/inventory.h"

namespace quorvel {

Text<256> mount_path(const char* name) {
    return Text<256>(files::kDataMount, name);
}

partition_info mounted_sizes(const char* path) {
    return {LibQuorvelBin_GetPartitionSize(path), LibQuorvelBin_GetPartitionUsedSize(path),
            LibQuorvelBin_GetPartitionFreeSize(path)};
}

uint64_t used_percent(const partition_info& sizes) {
    return sizes.total_size != 0 ? sizes.used_size * 100 / sizes.total_size : 0;
}

}  // namespace quorvel
