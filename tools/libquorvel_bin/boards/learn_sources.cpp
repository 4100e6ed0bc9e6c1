// Learning without plugging: by serial numbers, and from what the kernel itself tells of bays.
#include <dirent.h>
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include "boards/learn.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/open_in_time.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

struct BayWord {
    const char* word;
    int32_t type;
};

constexpr BayWord kBayWords[] = {
    {"usbdisk",  DISK_PATH_USB     },
    {"bootdisk", DISK_PATH_BOOT    },
    {"disk",     DISK_PATH_INTERNAL},
    {"",         DISK_PATH_INTERNAL},
};

// ---- Serial numbers ----

const AllDisks::Disk* disk_of_serial(const AllDisks& all, const char* serial) {
    const AllDisks::Disk* found = nullptr;
    for (int i = 0; i < all.count; i++) {
        if (strcmp(all.disks[i].serial.c_str(), serial) != 0) continue;
        if (found != nullptr) return nullptr;
        found = &all.disks[i];
    }
    return found;
}

[[nodiscard]] bool take_line(Proposal& proposal, const AllDisks& all, const char* path, int number, char* line) {
    char* bay = line + strspn(line, " \t");
    bay[strcspn(bay, "\r\n")] = '\0';
    if (bay[0] == '\0' || bay[0] == '#') return true;
    char* serial = bay + strcspn(bay, " \t");
    if (*serial != '\0') *serial++ = '\0';
    serial += strspn(serial, " \t");
    size_t length = strlen(serial);
    while (length > 0 && is_blank_character(serial[length - 1]))
        serial[--length] = '\0';
    int32_t type = 0;
    int slot = 0;
    if (!read_bay(bay, type, slot) || length == 0) {
        fprintf(stderr, "%s:%d: error: no bay and serial number; write \"3 SERIAL\" or \"usbdisk1 SERIAL\"\n", path,
                number);
        return false;
    }
    const AllDisks::Disk* disk = disk_of_serial(all, serial);
    if (disk != nullptr) return add_bay(proposal, type, slot, *disk, all);
    fprintf(stderr, "%s:%d: error: no disk, or not one only, has the serial number \"%s\"; those that are here:\n",
            path, number, serial);
    for (int i = 0; i < all.count; i++)
        fprintf(stderr, "  %s %s\n", all.disks[i].name.c_str(), all.disks[i].serial.c_str());
    return false;
}

// ---- What the kernel tells ----

struct KernelSearch {
    Proposal& proposal;
    const AllDisks& all;
    int bays[AllDisks::kMost] = {};  // of the disks, as they were told first; 0 for none
    bool right = true;
};

void take_disk(KernelSearch& search, int disk, int slot, const char* source) {
    if (search.bays[disk] != 0) return;
    search.bays[disk] = slot;
    printf("%s: bay %d by %s\n", search.all.disks[disk].name.c_str(), slot, source);
    search.right =
        add_bay(search.proposal, DISK_PATH_INTERNAL, slot, search.all.disks[disk], search.all) && search.right;
}

// An enclosure says what it likes.
[[nodiscard]] bool read_number_of(const char* path, int& number) {
    char line[32];
    if (!read_first_line(path, line, sizeof line) || !is_digit(line[0])) return false;
    number = leading_int(line);
    return number <= kMostBay;
}

// Calls `visit` with the path of each entry of a directory, in the order of their names.
template <typename Visit>
void for_each_entry(const char* directory, Visit&& visit) {
    struct dirent** entries = nullptr;
    int count = scandir(directory, &entries, nullptr, versionsort);
    for (int i = 0; i < count; i++) {
        Text<512> path("%s/%s", directory, entries[i]->d_name);
        if (!is_dot_entry(entries[i]->d_name) && !path.cut) visit(path.c_str());
        free(entries[i]);
    }
    free(entries);
}

// Whether a device of sysfs, given by any path to it, is above a disk.
bool is_above(const char* device, const BlockDisk& disk) {
    Heap<char> real(realpath(device, nullptr)), own(realpath(disk.path.c_str(), nullptr));
    if (!real || !own) return false;
    return starts_with(own.get(), real.get()) && own.get()[strlen(real.get())] == '/';
}

// Two that tell different bays of one disk cannot both be right, and nothing tells which of them is.
[[nodiscard]] bool is_told_otherwise(const KernelSearch& search, int disk, int slot) {
    const int bay = search.bays[disk];
    if (bay == 0 || bay == slot) return false;
    fprintf(stderr, "libquorvel_bin: learn: %s is said to be in bay %d, and in bay %d\n",
            search.all.disks[disk].name.c_str(), bay, slot);
    return true;
}

// Of the disks whose links hold a text, or of all.
void take_disks_below(KernelSearch& search, const char* device, int slot, const char* source, const char* host = "") {
    for (int i = 0; i < search.all.count; i++) {
        const BlockDisk& disk = search.all.disks[i];
        if (!contains(disk.link(), host) || !is_above(device, disk)) continue;
        search.right = !is_told_otherwise(search, i, slot) && search.right;
        take_disk(search, i, slot, source);
    }
}

// Slots are counted from 0 or from 1; bays from 1. An enclosure claims disks by their addresses, which one that a
// stranger plugs in can know as well: it is believed about disks of its own host, whose number begins its name.
void search_enclosures(KernelSearch& search) {
    for_each_entry("/sys/class/enclosure", [&search](const char* enclosure) {
        int least = 1, number = 0;
        const Text<32> host("/host%d/", leading_int(last_component(enclosure)));
        for_each_entry(enclosure, [&](const char* component) {
            if (read_number_of(Text<640>("%s/slot", component).c_str(), number) && number < least) least = number;
        });
        for_each_entry(enclosure, [&](const char* component) {
            if (!read_number_of(Text<640>("%s/slot", component).c_str(), number)) return;
            take_disks_below(search, Text<640>("%s/device", component).c_str(), number + 1 - least, "its enclosure",
                             host.c_str());
        });
    });
}

// The address is that of the slot, without the function: "0000:02:00".
void search_pci_slots(KernelSearch& search) {
    for_each_entry("/sys/bus/pci/slots", [&search](const char* slot) {
        char address[32];
        int number = leading_int(last_component(slot));
        if (number < 1 || number > kMostBay ||
            !read_first_line(Text<640>("%s/address", slot).c_str(), address, sizeof address))
            return;
        Text<64> device("/%s.", address);
        for (int i = 0; i < search.all.count; i++) {
            const BlockDisk& disk = search.all.disks[i];
            if (contains(disk.link(), device.c_str()) && contains(disk.link(), "/nvme"))
                take_disk(search, i, number, "its PCI slot");
        }
    });
}

// Each controller counts its ports from 1; several controllers are left to the person.
void search_ata_ports(KernelSearch& search) {
    for_each_entry("/sys/class/ata_port", [&search](const char* port) {
        int number = 0;
        if (!read_number_of(Text<640>("%s/port_no", port).c_str(), number)) return;
        take_disks_below(search, Text<640>("%s/device", port).c_str(), number, "its ATA port");
    });
}

}  // namespace

bool read_bay(const char* text, int32_t& type, int& slot) {
    const BayWord* row = kBayWords;
    while (!starts_with(text, row->word))
        row++;
    const char* number = text + strlen(row->word);
    type = row->type;
    slot = leading_int(number);
    return is_all_digits(number) && slot >= 1 && slot <= kMostBay;
}

bool learn_by_serials(Proposal& proposal, const AllDisks& all, const char* path) {
    constexpr size_t kPiece = 511;
    mode_t type;
    Descriptor file = open_in_time(path, type);
    if (type != S_IFREG) {
        // Nobody has to be waited for to write into a regular file.
        fprintf(stderr, "%s: %s\n", path, type == 0 && errno != EINVAL ? strerror(errno) : "no regular file");
        return false;
    }
    LineReader reader(file.number, kPiece);
    char line[kPiece + 1];
    bool right = true;
    for (int number = 1; next_line(reader, line, sizeof line); number++)
        right = take_line(proposal, all, path, number, line) && right;
    return right;
}

bool learn_from_kernel(Proposal& proposal, const AllDisks& all) {
    KernelSearch search = {proposal, all};
    search_enclosures(search);
    search_pci_slots(search);
    // A number of a port is no more than a guess at a bay.
    if (proposal.count == 0) search_ata_ports(search);
    if (proposal.count == 0) fputs("libquorvel_bin: learn: the kernel tells the bay of no disk here\n", stderr);
    return search.right;
}
