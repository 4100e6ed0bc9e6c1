// Which hardware platform and product series this is.
#include <stdio.h>
#include <string.h>

#include "foundation/answer.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/text.h"
#include "platform/pci_devices.h"
#include "quorvel/platform.h"

using namespace quorvel;

const struct platform_name platform_num2str[5] = {
    {PLATFORM_BOREL,         "borel"    },
    {PLATFORM_NISK_12BAY,    "nisk"     },
    {PLATFORM_PELLMAR_12BAY, "nisk"     },
    {PLATFORM_ARMADA370,     "armada370"},
    {PLATFORM_UNKNOWN,       nullptr    },
};

namespace {

// The controllers that tell the two 12-bay platforms.
enum { k9480, k9485, k9125, k9120, k6440, kDevices };
struct TwelveBay {
    MarvellDevice devices[kDevices] = {{"1b4b9480"}, {"1b4b9485"}, {"1b4b9125"}, {"1b4b9120"}, {"11ab6440"}};

    explicit TwelveBay(IsEnough is_enough) { find_marvell_devices(devices, is_enough); }
};

bool is_nisk(std::span<const MarvellDevice> devices) {
    return (devices[k9480].present && devices[k9125].present) ||
           (devices[k9485].present && (devices[k9125].present || devices[k9120].present));
}
bool is_pellmar(std::span<const MarvellDevice> devices) {
    return devices[k6440].present;
}

}  // namespace

int LibQuorvelBin_IsBorelPlatform(void) {
    return path_exists(files::kBorelClass) ? 1 : 0;
}

int LibQuorvelBin_IsNiskPlatform12Bay(void) {
    return is_nisk(TwelveBay(is_nisk).devices) ? 1 : 0;
}

int LibQuorvelBin_IsPellmarPlatform12Bay(void) {
    return is_pellmar(TwelveBay(is_pellmar).devices) ? 1 : 0;
}

int LibQuorvelBin_IsArmada370(void) {
    char series[512] = "";
    if (LibQuorvelBin_GetConfValInStringByKey(series, sizeof series, "PRODUCT_SERIES") != 0) return 0;
    return starts_with(series, "\"KT720\"") ? 1 : 0;
}

int LibQuorvelBin_GetPlatform(void) {
    if (LibQuorvelBin_IsBorelPlatform() == 1) return PLATFORM_BOREL;
    TwelveBay machine(is_nisk);
    if (is_nisk(machine.devices)) return PLATFORM_NISK_12BAY;
    if (is_pellmar(machine.devices)) return PLATFORM_PELLMAR_12BAY;
    return LibQuorvelBin_IsArmada370() == 1 ? PLATFORM_ARMADA370 : PLATFORM_UNKNOWN;
}

char* LibQuorvelBin_GetPlatformStr(char* buf, size_t size) {
    if (buf == nullptr || size == 0) return nullptr;
    int platform = LibQuorvelBin_GetPlatform();
    if (platform == PLATFORM_UNKNOWN) return nullptr;
    const struct platform_name* row = platform_num2str;
    while (row->number != PLATFORM_UNKNOWN && row->number != platform)
        row++;
    if (row->number == platform) {
        memset(buf, '\0', size);
        (void)snprintf(buf, size, "%s", row->name);
    }
    answer(buf);
    return buf;
}

char* LibQuorvelBin_GetSeriesName(char* dst, size_t size) {
    char series[32] = "";
    if (dst == nullptr) return nullptr;
    if (LibQuorvelBin_GetConfValInStringByKey(series, sizeof series, "SERIES_NAME") != 0) return nullptr;
    char* name = series + strspn(series, "\"");
    size_t length = strcspn(name, "\"\n");
    if (name[0] == '\0' || length >= size) return nullptr;
    copy_text(dst, size, std::string_view(name, length));
    return dst;
}
