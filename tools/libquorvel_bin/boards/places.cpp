#include "boards/places.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <new>

#include "foundation/files.h"
#include "foundation/numbers.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

// The components of a link behind "devices", as places in its text.
struct Components {
    static constexpr int kMost = 64;
    std::string_view text[kMost];
    int count = 0;

    explicit Components(std::string_view link) {
        while (count < kMost && !link.empty()) {
            size_t length = std::min(link.find('/'), link.size());
            std::string_view component(link.data(), length);
            if (component == "devices") {
                count = 0;
            } else if (!component.empty() && component != "..") {
                text[count++] = component;
            }
            link.remove_prefix(std::min(length + 1, link.size()));
        }
    }
    // The components from one to before another, with what stands between them.
    std::string_view span(int first, int end) const {
        const char* begin = text[first].data();
        return {begin, static_cast<size_t>(text[end - 1].data() + text[end - 1].size() - begin)};
    }
    int index_of(std::string_view prefix, int from = 0) const {
        while (from < count && !text[from].starts_with(prefix))
            from++;
        return from;
    }
};

// "0000:00:1f.2"
bool is_pci_address(std::string_view component) {
    return component.size() >= 12 && component[component.size() - 2] == '.' &&
           component.find_first_not_of("0123456789abcdef:.") == std::string_view::npos;
}

// Where the controller begins whose components end before `end`: the chain of PCI addresses, so that a bus that gets
// another number makes the row describe nothing rather than another place; elsewhere the last two components.
int begin_of_controller(const Components& components, int end) {
    int begin = end;
    while (begin > 0 && is_pci_address(components.text[begin - 1]))
        begin--;
    if (begin < end) return begin;
    begin = std::max(end - 2, 0);
    return components.text[begin] == "platform" && begin + 1 < end ? begin + 1 : begin;
}

bool holds_word(std::string_view component, std::string_view word) {
    return component.starts_with(word) && component.size() > word.size() && is_digit(component[word.size()]);
}

int index_of_numbered(const Components& components, std::string_view word) {
    int index = 0;
    while (index < components.count && !holds_word(components.text[index], word))
        index++;
    return index;
}

// ---- USB ----

// "1-2.3" gives 2 and 3, "1-2" gives 2 and -1; false for deeper ones.
[[nodiscard]] bool read_ports(std::string_view device, int& port1, int& port2) {
    Text<32> text("%.*s", static_cast<int>(device.size()), device.data());
    int bus = 0, end = 0;
    port2 = -1;
    if (sscanf(text.c_str(), "%d-%d%n", &bus, &port1, &end) != 2) return false;
    if (text.chars[end] == '\0') return true;
    int more = 0;
    return sscanf(text.c_str() + end, ".%d%n", &port2, &more) == 1 && text.chars[end + more] == '\0';
}

// What the kernel knows as the other speed of the connector: "usb2-port1" or "2-1-port3".
void find_peer(std::string_view device, LearntPlace& place) {
    char link[1024];
    Text<256> port("/sys/bus/usb/devices/%.*s/port/peer", static_cast<int>(device.size()), device.data());
    if (!read_link(port.c_str(), link, sizeof link)) return;
    const char* name = last_component(link);
    int bus = 0, port1 = -1, port2 = -1;
    if (sscanf(name, "usb%d-port%d", &bus, &port1) != 2 && sscanf(name, "%d-%d-port%d", &bus, &port1, &port2) != 3)
        return;
    if (port1 == place.port1 && port2 == place.port2) return;
    place.peer1 = port1;
    place.peer2 = port2;
}

LearntPlace place_on_usb(const Components& components, int bus) {
    LearntPlace place;
    place.usb = true;
    int device = bus + 1;
    while (device + 1 < components.count && components.text[device + 1].find(':') == std::string_view::npos)
        device++;
    if (device >= components.count || !read_ports(components.text[device], place.port1, place.port2)) {
        place.remark = "behind two hubs or more, which no row can tell";
        return place;
    }
    find_peer(components.text[device], place);
    place.path.add(components.span(begin_of_controller(components, bus), bus));
    return place;
}

// ---- Internal ----

bool is_address(std::string_view component) {
    return std::count(component.begin(), component.end(), ':') == 3 &&
           component.find_first_not_of("0123456789:") == std::string_view::npos;
}

std::string_view address_in(const Components& components) {
    for (int i = 0; i < components.count; i++) {
        if (is_address(components.text[i])) return components.text[i];
    }
    return "-";
}

bool has_ata_entry(const char* kind, std::string_view port, const char* behind) {
    Text<64> path("/sys/class/ata_%s/%s%.*s%s", kind, kind[0] == 'l' ? "link" : "dev", static_cast<int>(port.size()),
                  port.data(), behind);
    return path_exists(path.c_str());
}

// Whether one ATA port carries several disks: behind a port multiplier, or as master and slave.
bool is_shared_port(std::string_view component) {
    component.remove_prefix(strlen("ata"));
    return has_ata_entry("link", component, ".0") || has_ata_entry("device", component, ".1");
}

// The last component that belongs to the place at least, and what it depends on.
int end_of_place(const Components& components, LearntPlace& place) {
    int ata = index_of_numbered(components, "ata"), target = components.index_of("target");
    if (ata < components.count) {
        place.remark = "ATA ports are counted over all controllers: hold the order of controllers";
        return is_shared_port(components.text[ata]) && target < components.count ? target + 1 : ata + 1;
    }
    place.remark = "hosts are counted over all controllers: hold the order of controllers";
    int end_device = components.index_of("end_device-");
    if (end_device < components.count) return end_device;
    return std::min(target + 1, components.count);
}

// Whether a row with this path describes the disk and no other.
bool is_only_place_of(const char* path, const BlockDisk& disk, const AllDisks& all) {
    struct disk_path row = {DISK_PATH_INTERNAL, 1, const_cast<char*>(path), nullptr, -1, -1, nullptr};
    for (int i = 0; i < all.count; i++) {
        bool fits = fit_of_row(row, all.disks[i].place()) == Fit::kYes;
        if (fits != (strcmp(all.disks[i].name.c_str(), disk.name.c_str()) == 0)) return false;
    }
    return true;
}

LearntPlace place_inside(const Components& components, const BlockDisk& disk, const AllDisks& all) {
    LearntPlace place;
    place.address.add(address_in(components));
    int nvme = components.index_of("nvme");
    int first = std::min({nvme, index_of_numbered(components, "ata"), components.index_of("host"), components.count});
    int end = nvme < components.count ? nvme + 1 : end_of_place(components, place);
    // What stands between the controller and the host, such as a virtual bus, belongs to the place.
    int controller = first;
    while (controller > 0 && !is_pci_address(components.text[controller - 1]))
        controller--;
    int begin = begin_of_controller(components, controller > 0 ? controller : first);
    int block = components.index_of("block");
    for (; end <= block && end < components.count; end++) {
        place.path = Text<128>();
        place.path.add(components.span(begin, end));
        place.path.add("/");
        if (!place.path.cut && is_only_place_of(place.path.c_str(), disk, all)) return place;
    }
    place.path = Text<128>();
    place.remark = "no part of its link names it alone";
    return place;
}

// ---- Serial numbers ----

// Printable characters without the blanks around them; what a disk has between them is shown as "?".
void take_serial(const char* bytes, size_t length, Text<128>& serial) {
    while (length > 0 && (bytes[0] <= ' ' || bytes[0] > '~')) {
        bytes++;
        length--;
    }
    while (length > 0 && (bytes[length - 1] <= ' ' || bytes[length - 1] > '~'))
        length--;
    const size_t start = serial.length;
    serial.add({bytes, length});
    std::replace_if(
        serial.chars + start, serial.chars + serial.length, [](char c) { return c < ' ' || c > '~'; }, '?');
}

void read_serial(const char* path, size_t header, Text<128>& serial) {
    char bytes[256];
    Descriptor file = open_for_reading(path);
    ssize_t length = file ? read_fully(file.number, bytes, sizeof bytes) : -1;
    if (length > static_cast<ssize_t>(header))
        take_serial(bytes + header, static_cast<size_t>(length) - header, serial);
}

void find_serial(AllDisks::Disk& disk) {
    // A page of the disk itself, with a header; an NVMe controller's; that of a USB device above the disk.
    Text<128>& serial = disk.serial;
    Text<256> device("/sys/block/%s/device", disk.name.c_str());
    read_serial(Text<384>("%s/vpd_pg80", device.c_str()).c_str(), 4, serial);
    for (int up = 0; serial.length == 0 && up <= 7; up++) {
        Text<384> path("%s", device.c_str());
        for (int i = 0; i < up; i++)
            path.append("/..");
        path.append("/serial");
        read_serial(path.c_str(), 0, serial);
    }
}

[[nodiscard]] bool collect_disk(AllDisks& all, const char* name) {
    if (all.count == AllDisks::kMost) return false;
    AllDisks::Disk* disk = new (&all.disks[all.count]) AllDisks::Disk();
    if (!find_block_disk(name, true, *disk)) return false;
    find_serial(*disk);
    all.count++;
    return true;
}

}  // namespace

AllDisks::AllDisks() : disks(static_cast<Disk*>(calloc(kMost, sizeof(Disk)))) {
    look();
}

void AllDisks::look() {
    count = 0;
    if (disks == nullptr) return;
    (void)for_each_disk([](void* all, const char* name) { (void)collect_disk(*static_cast<AllDisks*>(all), name); },
                        this);
}

AllDisks::~AllDisks() {
    free(disks);
}

const AllDisks::Disk* AllDisks::find(const char* name) const {
    for (int i = 0; i < count; i++) {
        if (strcmp(disks[i].name.c_str(), name) == 0) return &disks[i];
    }
    return nullptr;
}

LearntPlace place_of_disk(const BlockDisk& disk, const AllDisks& all) {
    Components components(disk.link());
    int bus = index_of_numbered(components, "usb");
    return bus < components.count ? place_on_usb(components, bus) : place_inside(components, disk, all);
}
