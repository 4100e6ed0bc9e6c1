// What is mounted of an array or disk, and how full it is.
#include "foundation/appliance_files.h"
#include "quorvel/disk.h"
#include "raid/inventory.h"

namespace quorvel {

MountPath mount_path(const char* name) {
    return MountPath(files::kDataMount, name);
}

std::optional<partition_info> mounted_sizes(const MountPath& path) {
    if (path.cut || IsMounted(path.c_str()) != 1) return {};
    return partition_info{LibQuorvelBin_GetPartitionSize(path.c_str()),
                          LibQuorvelBin_GetPartitionUsedSize(path.c_str()),
                          LibQuorvelBin_GetPartitionFreeSize(path.c_str())};
}

uint64_t used_percent(const partition_info& sizes) {
    return sizes.total_size != 0 ? sizes.used_size * 100 / sizes.total_size : 0;
}

}  // namespace quorvel
