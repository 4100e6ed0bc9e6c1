#include "boards/proposal.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <new>

#include "boards/naming_source.h"
#include "boards/reasons.h"
#include "foundation/child.h"
#include "foundation/replacement.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

constexpr char kCopy[] = "/etc/diskpath.conf.old";

// ---- Rows ----

struct Rows {
    struct disk_path rows[2 * Proposal::kMost + 1];
    int count = 0;
};

struct disk_path row_of(const LearntBay& bay, int port1, int port2) {
    const LearntPlace& place = bay.place;
    return {bay.type, bay.slot, const_cast<char*>(place.path.c_str()), const_cast<char*>(place.address.c_str()), port1,
            port2,    nullptr};
}

// A port behind a hub stands before the one the hub hangs on, which would take its disks.
void add_rows(Rows& rows, const Proposal& proposal, bool behind_hubs) {
    for (int i = 0; i < proposal.count; i++) {
        const LearntBay& bay = proposal.bays[i];
        if ((bay.place.port2 != -1) == behind_hubs)
            rows.rows[rows.count++] = row_of(bay, bay.place.port1, bay.place.port2);
        if (bay.place.peer1 != -1 && (bay.place.peer2 != -1) == behind_hubs)
            rows.rows[rows.count++] = row_of(bay, bay.place.peer1, bay.place.peer2);
    }
}

void make_rows(Rows& rows, const Proposal& proposal) {
    add_rows(rows, proposal, true);
    add_rows(rows, proposal, false);
    rows.rows[rows.count] = {DISK_PATH_END, 0, nullptr, nullptr, -1, -1, nullptr};
}

void print_row(FILE* file, const struct disk_path& row) {
    if (row.type == DISK_PATH_USB) {
        fprintf(file, "HDD_USB=%d,\t%s,\t%d,\t%d\n", row.slot, row.path, row.usb_port1, row.usb_port2);
    } else if (row.type == DISK_PATH_BOOT) {
        fprintf(file, "HDD_BOOT=%d,\t%s\n", row.slot, row.path);
    } else {
        fprintf(file, "HDD_INTERNAL=%d,\t%s,\t%s\n", row.slot, row.path, row.scsi_id);
    }
}

void print_rows(FILE* file, const Rows& rows) {
    for (int i = 0; i < rows.count; i++)
        print_row(file, rows.rows[i]);
}

// ---- What they name ----

// A disk under the kernel name of another.
BlockDisk renamed(const BlockDisk& disk, const char* name) {
    BlockDisk other;
    other.name.add(name);
    size_t end = static_cast<size_t>(strrchr(disk.path.c_str(), '/') + 1 - disk.path.c_str());
    other.path.add({disk.path.c_str(), end});
    other.path.add(name);
    other.link_at = disk.link_at;
    return other;
}

Text<128> name_by(const Rows& rows, const BlockDisk& disk) {
    int row = find_row(rows.rows, disk.place(), [] { return false; });
    return row < rows.count ? name_of_row(rows.rows[row]) : Text<128>("-");
}

// The name is that of the bay at the disk's place, if there is one.
bool is_name_of(const Proposal& proposal, const BlockDisk& disk, const AllDisks& all, const char* name) {
    LearntPlace place = place_of_disk(disk, all);
    const LearntBay* bay = place.path.length > 0 ? proposal.find(place) : nullptr;
    return strcmp(bay != nullptr ? name_of_bay(bay->type, bay->slot).c_str() : "-", name) == 0;
}

// ---- The file ----

// The whole file as a text, or nothing and errno.
std::string_view text_of(const Proposal& proposal, Heap<char>& text) {
    char* content = nullptr;
    size_t length = 0;
    File file(open_memstream(&content, &length));
    if (!file) return {};
    Rows rows;
    make_rows(rows, proposal);
    fputs("; Slots of this machine, written by libquorvel_bin learn.\n", file.get());
    print_rows(file.get(), rows);
    const bool whole = ferror(file.get()) == 0;
    const bool closed = fclose(file.release()) == 0;
    text.reset(content);
    return whole && closed ? std::string_view(content, length) : std::string_view();
}

[[nodiscard]] bool keep_copy() {
    if (unlink(kCopy) != 0 && errno != ENOENT) return false;
    return link(kDiskOrderFile.path, kCopy) == 0 || errno == ENOENT;
}

}  // namespace

Proposal::Proposal() : bays(static_cast<LearntBay*>(calloc(kMost, sizeof(LearntBay)))) {}

Proposal::~Proposal() {
    free(bays);
}

const LearntBay* Proposal::find(int32_t type, int slot) const {
    for (int i = 0; i < count; i++) {
        if (bays[i].type == type && bays[i].slot == slot) return &bays[i];
    }
    return nullptr;
}

const LearntBay* Proposal::find(const LearntPlace& place) const {
    for (int i = 0; i < count; i++) {
        const LearntPlace& other = bays[i].place;
        if (strcmp(other.path.c_str(), place.path.c_str()) == 0 && other.port1 == place.port1 &&
            other.port2 == place.port2)
            return &bays[i];
    }
    return nullptr;
}

Text<32> name_of_bay(int32_t type, int slot) {
    return Text<32>("%s%d", word_of_row({type, slot, nullptr, nullptr, -1, -1, nullptr}), slot);
}

bool add_bay(Proposal& proposal, int32_t type, int slot, const AllDisks::Disk& disk, const AllDisks& all) {
    Text<32> name = name_of_bay(type, slot);
    LearntPlace place = place_of_disk(disk, all);
    const LearntBay* other = proposal.find(place);
    const char* obstacle = nullptr;
    if (place.path.length == 0) obstacle = place.remark;
    if (type == DISK_PATH_INTERNAL && place.usb) obstacle = "it is on USB";
    if (type == DISK_PATH_USB && !place.usb) obstacle = "it is not on USB";
    if (type == DISK_PATH_BOOT && place.usb) obstacle = "a row of a boot disk on USB is to be written by hand";
    if (proposal.find(type, slot) != nullptr) obstacle = "it has a disk already";
    if (obstacle == nullptr && other != nullptr) obstacle = "its place has another name already";
    if (obstacle != nullptr || proposal.bays == nullptr || proposal.count == Proposal::kMost) {
        fprintf(stderr, "libquorvel_bin: learn: %s cannot be %s: %s\n", disk.name.c_str(), name.c_str(),
                obstacle != nullptr ? obstacle : "there are too many");
        return false;
    }
    LearntBay* bay = new (&proposal.bays[proposal.count++]) LearntBay();
    bay->type = type;
    bay->slot = slot;
    bay->place = place;
    bay->serial.add(disk.serial.c_str());
    return true;
}

bool show_proposal(const Proposal& proposal, const AllDisks& all) {
    Rows rows;
    make_rows(rows, proposal);
    puts("\nRows:");
    print_rows(stdout, rows);
    const char* remark = nullptr;
    for (int i = 0; i < proposal.count; i++) {
        const char* own = proposal.bays[i].place.remark;
        if (own != nullptr && own != remark) printf("; %s\n", own);
        if (own != nullptr) remark = own;
    }
    printf("\n%-10s %-24s %-12s %s\n", "Disk", "Serial number", "Name", "Name in another order of kernel names");
    bool right = true;
    for (int i = 0; i < all.count; i++) {
        const AllDisks::Disk& disk = all.disks[i];
        // In another order: the first disk under the name of the last, and so on.
        const char* other_name = all.disks[all.count - 1 - i].name.c_str();
        Text<128> name = name_by(rows, disk), other = name_by(rows, renamed(disk, other_name));
        bool same = strcmp(name.c_str(), other.c_str()) == 0 && is_name_of(proposal, disk, all, name.c_str());
        printf("%-10s %-24s %-12s %s as %s%s\n", disk.name.c_str(), disk.serial.c_str(), name.c_str(), other.c_str(),
               other_name, same ? "" : "  WRONG");
        right = right && same;
    }
    return right;
}

bool write_proposal(const Proposal& proposal) {
    const HeldSignals held;
    Heap<char> text;
    const std::string_view content = text_of(proposal, text);
    const bool written = !content.empty() && keep_copy() && replace_file(kDiskOrderFile.path, content);
    if (!written) perror("libquorvel_bin: learn: /etc/diskpath.conf is as it was");
    return written;
}
