// What a disk is and what is on it, for a person who is about to erase it.
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <string_view>

#include "block_devices.h"
#include "disk_guard.h"

using namespace quorvel;

namespace {

// Where the kernel keeps serial numbers: of NVMe and of virtual disks, of SCSI disks, of a USB disk's port.
constexpr const char* kSerialNumbers[] = {"device/serial", "serial", "device/vpd_pg80", "device/../../../../serial"};

// What stands at the start of well-known kinds; the first that fits names it.
struct Signature {
    const char* kind;
    size_t offset;
    std::string_view bytes;
};

constexpr Signature kSignatures[] = {
    {"ext2, ext3 or ext4", 1080, "\x53\xef"        },
    {"xfs",                0,    "XFSB"            },
    {"swap",               4086, "SWAPSPACE2"      },
    {"md member",          4096, "\xfc\x4e\x2b\xa9"},
    {"LVM member",         512,  "LABELONE"        },
    {"LUKS",               0,    "LUKS\xba\xbe"    },
    {"NTFS",               3,    "NTFS    "        },
    {"FAT",                54,   "FAT1"            },
    {"FAT",                82,   "FAT32"           },
    {"GPT",                512,  "EFI PART"        },
    {"MBR",                510,  "\x55\xaa"        },
};

const char* kind_of(std::string_view start) {
    for (const Signature& signature : kSignatures) {
        std::string_view rest = start;
        rest.remove_prefix(std::min(signature.offset, start.size()));
        if (rest.starts_with(signature.bytes)) return signature.kind;
    }
    return nullptr;
}

// Members of older arrays are marked in the last whole 64 KiB but one; the mark's bytes are in the machine's order.
bool is_older_member(int device, uint64_t bytes) {
    constexpr uint64_t kReserved = 65536;
    uint32_t magic = 0;
    if (bytes < 2 * kReserved) return false;
    const auto offset = static_cast<off_t>(bytes / kReserved * kReserved - kReserved);
    return pread(device, &magic, sizeof magic, offset) == sizeof magic && magic == 0xa92b4efc;
}

// What a device's bytes look like; null for nothing that is known.
const char* content_of(const char* name, uint64_t bytes) {
    char start[8192];
    Descriptor device = open_for_reading(Text<80>("/dev/%s", name).c_str());
    if (!device) return nullptr;
    ssize_t length = pread(device.number, start, sizeof start, 0);
    const char* kind = length > 0 ? kind_of({start, static_cast<size_t>(length)}) : nullptr;
    return is_older_member(device.number, bytes) ? "md member" : kind;
}

uint64_t bytes_of(const char* directory) {
    char sectors[32];
    if (!read_first_line(SysPath("%s/size", directory).c_str(), sectors, sizeof sectors)) return 0;
    return strtoull(sectors, nullptr, 10) * 512;
}

// The printable characters without blanks around them: an answer to an inquiry begins with four other bytes.
void print_serial_number(const char* kernel) {
    char serial[64] = "";
    for (const char* place : kSerialNumbers) {
        Descriptor file = open_for_reading(SysPath("%s/%s/%s", kBlockDevices, kernel, place).c_str());
        ssize_t length = file ? read_fully(file.number, serial, sizeof serial) : -1;
        if (length <= 0) continue;
        std::string_view text(serial, static_cast<size_t>(length));
        if (contains(place, "vpd")) text.remove_prefix(text.size() < 4 ? text.size() : 4);
        while (!text.empty() && (text.front() == ' ' || text.front() == '\0'))
            text.remove_prefix(1);
        while (!text.empty() && (is_blank_character(text.back()) || text.back() == '\0'))
            text.remove_suffix(1);
        for (char c : text)
            putchar(c > ' ' && c < 0x7f ? c : '?');
        return;
    }
    putchar('-');
}

}  // namespace

void describe_disk(const Disk& disk) {
    printf("device=%s\nname=%s\nserial=", disk.node, disk.name);
    print_serial_number(disk.kernel);
    const uint64_t whole = bytes_of(SysPath("%s/%s", kBlockDevices, disk.kernel).c_str());
    printf("\nbytes=%llu\n", static_cast<unsigned long long>(whole));
    (void)any_part(disk.kernel, [&disk](const char* directory, const char* name, dev_t) {
        const uint64_t bytes = bytes_of(directory);
        const char* kind = content_of(name, bytes);
        const bool part = strcmp(name, disk.kernel) != 0;
        if (part || kind != nullptr) {
            printf("holds=%s %llu %s\n", name, static_cast<unsigned long long>(bytes), kind != nullptr ? kind : "-");
        }
        return false;
    });
}
