// Which disks, bays and USB ports there are.
#include <errno.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>

#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/gather.h"

namespace report {

namespace {

constexpr int kMostPorts = 99;

int add_entry(const struct disk_entry* entry, void* context) {
    auto& facts = *static_cast<Facts*>(context);
    DiskFacts* disk = add(facts.disks);
    if (disk == nullptr) return -1;
    disk->kind = entry->kind;
    set_unless_empty(disk->name, entry->name, "no slot table names its place");
    set_unless_empty(disk->device, entry->device, "no disk");
    set_unless_empty(disk->address, entry->address, "not told for this place");
    set_unless_negative(disk->slot, entry->kind == DISK_PATH_END ? -1 : entry->slot, "no slot table names its place");
    return 0;
}

bool is_listed(const Facts& facts, const char* name) {
    return std::any_of(facts.disks.begin(), facts.disks.end(),
                       [name](const DiskFacts& disk) { return strcmp(text_of(disk.name), name) == 0; });
}

void add_port(Facts& facts, const char* word, int port) {
    struct disk_entry entry = {};
    snprintf(entry.name, sizeof entry.name, "%s%d", word != nullptr ? word : "usbdisk", port);
    entry.kind = DISK_PATH_USB;
    entry.slot = port;
    if (!is_listed(facts, entry.name)) (void)add_entry(&entry, &facts);
}

// Two rows may stand for one port: the first adds it.
void add_ports(Facts& facts, const struct disk_path* set) {
    for (const struct disk_path* row = set; row != nullptr && row->type != DISK_PATH_END; row++) {
        if (row->type == DISK_PATH_USB) add_port(facts, row->diskname, row->slot);
    }
}

void add_empty_ports(Facts& facts) {
    struct disk_path* configured = get_DiskOrderConfig();
    const struct disk_path* set = configured != nullptr ? configured : LibQuorvelBin_GetPlatformDiskSet();
    add_ports(facts, set);
    const int ports = set == nullptr ? std::min(LibQuorvelBin_GetMaxUsbdiskNum(), kMostPorts) : 0;
    for (int port = 1; port <= ports; port++)
        add_port(facts, nullptr, port);
    disk_path_free(configured);
}

int64_t rank_of(const DiskFacts& disk) {
    return static_cast<int64_t>(disk.kind) << 32 | disk.slot.value;
}

// Few disks, nearly in order already.
void sort_disks(List<DiskFacts>& disks) {
    for (size_t i = 1; i < disks.count; i++) {
        for (size_t k = i; k > 0 && rank_of(disks.items[k - 1]) > rank_of(disks.items[k]); k--)
            std::swap(disks.items[k - 1], disks.items[k]);
    }
}

}  // namespace

void gather_disk_list(Facts& facts) {
    facts.disks.reason = nullptr;
    if (LibQuorvelBin_WalkDisks(add_entry, &facts) < 0 && is_known(facts.disks)) facts.disks.reason = strerror(errno);
    add_empty_ports(facts);
    sort_disks(facts.disks);
}

}  // namespace report
