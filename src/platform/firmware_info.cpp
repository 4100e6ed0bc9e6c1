// The firmware information record.
#include <stdio.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/key_value.h"
#include "quorvel/foundation.h"
#include "quorvel/platform.h"

using namespace quorvel;

int Firminfo_GetFirmInfo(firm_info* info) {
    if (info == nullptr) return fail(EINVAL);
    memset(info, 0, sizeof *info);
    KeyRequest fields[] = {
        {"PRODUCT_NAME", info->product_name, sizeof info->product_name},
        {"VERSION",      info->version,      sizeof info->version     },
        {"SUB_VERSION",  info->sub_version,  sizeof info->sub_version },
        {"PRODUCT_ID",   info->product_id,   sizeof info->product_id  },
        {"BUILD_DATE",   info->build_date,   sizeof info->build_date  },
    };
    size_t found = read_keys(files::kDriverFirmware, fields);
    if (found < std::size(fields)) found += read_keys(files::kRelease, fields);
    if (found == 0) return -1;
    if (from_cmdline == 1) {
        for (const KeyRequest& field : fields)
            printf("%s=%s\n", field.key.data(), field.dst);
    }
    return 0;
}
