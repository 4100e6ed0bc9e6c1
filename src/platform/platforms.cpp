#include "platform/platforms.h"

#include <optional>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "platform/pci_devices.h"
#include "quorvel/foundation.h"
#include "quorvel/platform.h"

namespace quorvel {

namespace {

// The controllers that tell the two 12-bay platforms.
enum { k9480, k9485, k9125, k9120, k6440, kControllers };

}  // namespace

struct Controllers {
    PciDevice devices[kControllers] = {{"1b4b9480"}, {"1b4b9485"}, {"1b4b9125"}, {"1b4b9120"}, {"11ab6440"}};

    bool has(int controller) const { return devices[controller].present; }
};

namespace {

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

// Tried from the top.
// clang-format off
constexpr Platform kPlatforms[] = {
    {PLATFORM_BOREL,         "borel",     "borel",          "/sys/class/borel is there",                         files::kTextLoopbackPort, LoopbackTest::kText,  false, is_borel},
    {PLATFORM_NISK_12BAY,    "nisk",      "nisk 12-bay",    "/proc/bus/pci/devices has its pair of controllers", files::kTextLoopbackPort, LoopbackTest::kText,  true,  is_nisk},
    {PLATFORM_PELLMAR_12BAY, "nisk",      "pellmar 12-bay", "/proc/bus/pci/devices has 11ab6440",                files::kLineLoopbackPort, LoopbackTest::kLines, true,  is_pellmar},
    {PLATFORM_ARMADA370,     "armada370", "armada370",      "PRODUCT_SERIES in /etc/nas_feature is \"KT720\"",   files::kLineLoopbackPort, LoopbackTest::kLines, false, is_armada370},
};
// clang-format on

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

}  // namespace

const Platform* find_platform() {
    std::optional<Controllers> machine;
    for (const Platform& platform : kPlatforms) {
        if (platform.by_controllers && !machine) machine = find_controllers();
        if (platform.is_this(machine ? *machine : Controllers())) return &platform;
    }
    return nullptr;
}

bool is_platform(int number) {
    for (const Platform& platform : kPlatforms) {
        if (platform.number == number)
            return platform.is_this(platform.by_controllers ? find_controllers() : Controllers());
    }
    return false;
}

}  // namespace quorvel
