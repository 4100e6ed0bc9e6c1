#include "disk/signature.h"

#include <stdio.h>
#include <string.h>

#include "disk/signature_device.h"
#include "foundation/text.h"
#include "quorvel/net.h"

namespace quorvel {

namespace {

constexpr size_t kSize = 84;

// In memory the record has the layout it has on the device, so that only the numbers need converting.
static_assert(sizeof(disk_signature) == kSize);
static_assert(offsetof(disk_signature, hdr_len) == 8 && offsetof(disk_signature, raw_device) == 32);
static_assert(offsetof(disk_signature, mac_address) == 40 && offsetof(disk_signature, in_device) == 60);
static_assert(offsetof(disk_signature, cryptinfo) == 68);

uint32_t from_little_endian(const uint8_t* bytes) {
    return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
           static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

void to_little_endian(uint8_t* bytes, uint32_t number) {
    for (int i = 0; i < 4; i++)
        bytes[i] = static_cast<uint8_t>(number >> 8 * i);
}

// A foreign disk's text may fill its field without a terminator.
template <size_t Size>
void print_text(const char* label, const char (&text)[Size]) {
    printf("%-15s %.*s\n", label, static_cast<int>(Size), text);
}

}  // namespace

int read_own_address(char (&text)[kAddressTextSize]) {
    uint8_t address[6];
    int result = Netdev_GetHwAddr("eth0", address);
    if (result != 0) return result;
    Text<kAddressTextSize> formatted("%02x:%02x:%02x:%02x:%02x:%02x", address[0], address[1], address[2], address[3],
                                     address[4], address[5]);
    memcpy(text, formatted.chars, sizeof text);
    return 0;
}

void show_signature(const char* path, disk_signature& record) {
    if (LibQuorvelBin_LoadDiskSignature(path, &record) != 0) return;
    printf("version         %d.%02d\n", static_cast<int>(record.sig_ver.major), static_cast<int>(record.sig_ver.minor));
    printf("hdr_len         %d\n", static_cast<int>(record.hdr_len));
    print_text("raw_device_name", record.raw_device);
    print_text("mac_address", record.mac_address);
    print_text("in_device", record.in_device);
    print_text("cryptinfo", record.cryptinfo);
}

void write_signature(const char* path, const disk_signature& record) {
    uint8_t bytes[kSize];
    memcpy(bytes, &record, sizeof bytes);
    to_little_endian(bytes, record.sig_ver.major);
    to_little_endian(bytes + 4, record.sig_ver.minor);
    to_little_endian(bytes + 8, record.hdr_len);
    (void)write_signature_device(path, 0, bytes, sizeof bytes);  // reported there; no caller answers it
}

}  // namespace quorvel

using namespace quorvel;

int LibQuorvelBin_LoadDiskSignature(const char* path, struct disk_signature* record) {
    uint8_t bytes[kSize];
    if (path == nullptr || record == nullptr) return -1;
    if (!read_signature_device(path, 0, bytes, sizeof bytes, sizeof bytes)) return -1;
    memcpy(record, bytes, sizeof bytes);
    record->sig_ver.major = from_little_endian(bytes);
    record->sig_ver.minor = from_little_endian(bytes + 4);
    record->hdr_len = from_little_endian(bytes + 8);
    return 0;
}

int IsMyDisk(const char* name) {
    if (name == nullptr) return -1;
    disk_signature record = {};
    if (contains(name, "/dev/")) {
        show_signature(name, record);
    } else {
        show_signature(Text<128>("/dev/%s", name).c_str(), record);
    }
    char own_address[kAddressTextSize];
    int result = read_own_address(own_address);
    if (result != 0) return result;
    return memcmp(record.mac_address, own_address, kAddressTextSize - 1) == 0 ? 1 : 0;
}
