#include "disk/signature.h"

#include <stdio.h>
#include <string.h>

#include "disk/signature_device.h"
#include "foundation/failure.h"
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

// A foreign disk's text may fill its field without a terminator, and hold anything.
template <size_t Size>
void print_text(const char* label, const char (&text)[Size]) {
    printf("%-15s ", label);
    print_foreign({text, strnlen(text, Size)});
    putchar('\n');
}

}  // namespace

std::optional<MacText> own_address() {
    uint8_t address[6];
    if (Netdev_GetHwAddr("eth0", address) != 0) return {};
    return mac_text(address);
}

std::optional<disk_signature> show_signature(WholeText path) {
    disk_signature record;
    if (LibQuorvelBin_LoadDiskSignature(path.text, &record) != 0) return {};
    printf("version         %d.%02d\n", static_cast<int>(record.sig_ver.major), static_cast<int>(record.sig_ver.minor));
    printf("hdr_len         %d\n", static_cast<int>(record.hdr_len));
    print_text("raw_device_name", record.raw_device);
    print_text("mac_address", record.mac_address);
    print_text("in_device", record.in_device);
    print_text("cryptinfo", record.cryptinfo);
    return record;
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
    if (path == nullptr || record == nullptr) return fail(EINVAL);
    if (!read_signature_device(path, 0, bytes, sizeof bytes, sizeof bytes)) return -1;
    memcpy(record, bytes, sizeof bytes);
    record->sig_ver.major = from_little_endian(bytes);
    record->sig_ver.minor = from_little_endian(bytes + 4);
    record->hdr_len = from_little_endian(bytes + 8);
    return 0;
}

int IsMyDisk(const char* name) {
    if (name == nullptr) return fail(EINVAL);
    Text<128> path("/dev/%s", name);
    std::optional<disk_signature> record = show_signature(contains(name, "/dev/") ? WholeText(name) : WholeText(path));
    std::optional<MacText> address = own_address();
    if (!address) return -1;
    return record && memcmp(record->mac_address, address->c_str(), address->length) == 0 ? 1 : 0;
}
