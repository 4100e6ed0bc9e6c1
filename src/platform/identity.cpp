// Which hardware platform and product series this is.
#include <stdio.h>
#include <string.h>

#include "foundation/answer.h"
#include "foundation/failure.h"
#include "foundation/text.h"
#include "platform/platforms.h"
#include "quorvel/platform.h"

using namespace quorvel;

// Programs have its size built in: a platform that is added has no row here.
const struct platform_name platform_num2str[5] = {
    {PLATFORM_BOREL,         "borel"    },
    {PLATFORM_NISK_12BAY,    "nisk"     },
    {PLATFORM_PELLMAR_12BAY, "nisk"     },
    {PLATFORM_ARMADA370,     "armada370"},
    {PLATFORM_UNKNOWN,       nullptr    },
};

int LibQuorvelBin_IsBorelPlatform(void) {
    return is_platform(PLATFORM_BOREL) ? 1 : 0;
}

int LibQuorvelBin_IsNiskPlatform12Bay(void) {
    return is_platform(PLATFORM_NISK_12BAY) ? 1 : 0;
}

int LibQuorvelBin_IsPellmarPlatform12Bay(void) {
    return is_platform(PLATFORM_PELLMAR_12BAY) ? 1 : 0;
}

int LibQuorvelBin_IsArmada370(void) {
    return is_platform(PLATFORM_ARMADA370) ? 1 : 0;
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
