// Which hardware platform and product series this is.
#include <stdio.h>
#include <string.h>

#include <optional>

#include "foundation/answer.h"
#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "platform/pci_devices.h"
#include "quorvel/platform.h"

using namespace quorvel;

// Programs have its size built in: a platform that is added goes into kPlatforms only.
const struct platform_name platform_num2str[5] = {
    {PLATFORM_BOREL,         "borel"    },
    {PLATFORM_NISK_12BAY,    "nisk"     },
    {PLATFORM_PELLMAR_12BAY, "nisk"     },
    {PLATFORM_ARMADA370,     "armada370"},
    {PLATFORM_UNKNOWN,       nullptr    },
};

namespace {

// The controllers that tell the two 12-bay platforms.
enum { k9480, k9485, k9125, k9120, k6440, kControllers };
struct Controllers {
    PciDevice devices[kControllers] = {{"1b4b9480"}, {"1b4b9485"}, {"1b4b9125"}, {"1b4b9120"}, {"11ab6440"}};

    bool has(int controller) const { return devices[controller].present; }
};

Controllers find_controllers() {
    Controllers found;
    find_pci_devices(found.devices);
    return found;
}

bool is_borel(const Controllers&) {
    return path_exists(files::kBorelClass);
}
bool is_nisk(const Controllers& machine) {
    return (machine.has(k9480) && machine.has(k9125)) ||
           (machine.has(k9485) && (machine.has(k9125) || machine.has(k9120)));
}
bool is_pellmar(const Controllers& machine) {
    return machine.has(k6440);
}
bool is_armada370(const Controllers&) {
    char series[512] = "";
    return LibQuorvelBin_GetConfValInStringByKey(series, sizeof series, "PRODUCT_SERIES") == 0 &&
           starts_with(series, "\"KT720\"");
}

// Every platform: its number, its name, and how it is recognised. They are tried from the top.
struct Platform {
    int number;
    const char* name;
    bool by_controllers;  // the PCI list is read once for all that need it
    bool (*is_this)(const Controllers& machine);
};
constexpr Platform kPlatforms[] = {
    {PLATFORM_BOREL,         "borel",     false, is_borel    },
    {PLATFORM_NISK_12BAY,    "nisk",      true,  is_nisk     },
    {PLATFORM_PELLMAR_12BAY, "nisk",      true,  is_pellmar  },
    {PLATFORM_ARMADA370,     "armada370", false, is_armada370},
};

consteval bool numbers_are_their_own() {
    for (const Platform& one : kPlatforms) {
        if (one.number == PLATFORM_UNKNOWN) return false;
        for (const Platform& other : kPlatforms) {
            if (&one != &other && one.number == other.number) return false;
        }
    }
    return true;
}
static_assert(numbers_are_their_own(), "a platform has the number of another one, or of none");

const Platform* find_platform() {
    std::optional<Controllers> machine;
    for (const Platform& platform : kPlatforms) {
        if (platform.by_controllers && !machine) machine = find_controllers();
        if (platform.is_this(machine ? *machine : Controllers())) return &platform;
    }
    return nullptr;
}

}  // namespace

int LibQuorvelBin_IsBorelPlatform(void) {
    return is_borel({}) ? 1 : 0;
}

int LibQuorvelBin_IsNiskPlatform12Bay(void) {
    return is_nisk(find_controllers()) ? 1 : 0;
}

int LibQuorvelBin_IsPellmarPlatform12Bay(void) {
    return is_pellmar(find_controllers()) ? 1 : 0;
}

int LibQuorvelBin_IsArmada370(void) {
    return is_armada370({}) ? 1 : 0;
}

int LibQuorvelBin_GetPlatform(void) {
    const Platform* platform = find_platform();
    return platform != nullptr ? platform->number : PLATFORM_UNKNOWN;
}

char* LibQuorvelBin_GetPlatformStr(char* buf, size_t size) {
    if (buf == nullptr) return fail_null(EINVAL);
    const Platform* platform = find_platform();
    if (platform == nullptr) return fail_null(ENODEV);
    if (size > 0) {
        memset(buf, '\0', size);
        copy_text(buf, size, platform->name);
    }
    answer(buf);
    return buf;
}

char* LibQuorvelBin_GetSeriesName(char* dst, size_t size) {
    char series[32] = "";
    if (dst == nullptr) return fail_null(EINVAL);
    if (LibQuorvelBin_GetConfValInStringByKey(series, sizeof series, "SERIES_NAME") != 0) return nullptr;
    char* name = series + strspn(series, "\"");
    size_t length = strcspn(name, "\"\n");
    if (name[0] == '\0') return fail_null(ENODATA);
    if (length >= size) return fail_null(ERANGE);
    copy_text(dst, size, std::string_view(name, length));
    return dst;
}
