// The words of the disk status file, md's own words, and the status recorded for a name.
#include "foundation/appliance_files.h"
#include "foundation/code_table.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/text.h"
#include "raid/inventory.h"

using namespace quorvel;

const struct diskinfo_code diskinfo_tbl[17] = {
    {0x0,            "normal"         },
    {0x1,            "standby"        },
    {0x2,            "degrade"        },
    {0x3,            "remove"         },
    {0x11,           "standby_removed"},
    {0x12,           "degrade_removed"},
    {0x13,           "remove_removed" },
    {0x101,          "array1"         },
    {0x102,          "array2"         },
    {0xfff,          "off"            },
    {0x1000,         "raid0"          },
    {0x1001,         "raid1"          },
    {0x1005,         "raid5"          },
    {0x1006,         "raid6"          },
    {0x1010,         "raid10"         },
    {0x1020,         "jbod"           },
    {kStatusUnknown, "unkown"         },
};

namespace {

constexpr CodeName kDiskStates[] = {
    {0, "faulty"      },
    {1, "active"      },
    {2, "sync"        },
    {3, "removed"     },
    {9, "write_mostly"},
};

constexpr CodeName kLevels[] = {
    {0, "raid0"},
    {1, "raid1"},
    {5, "raid5"},
    {6, "raid6"},
};

}  // namespace

const char* str_diskinfo_value(int code) {
    return name_of<diskinfo_code>(diskinfo_tbl, code, "unkown");
}

const char* str_md_state(int state) {
    return name_of<CodeName>(kDiskStates, state, "Unkown");
}

const char* str_md_level(int level) {
    return name_of<CodeName>(kLevels, level, "Unkown");
}

int quorvel::md_level_of(const char* name) {
    return code_of<CodeName>(kLevels, name, -1);
}

// Stricter than a key=value reader: the line starts with "NAME=", and all behind the first "=" is the word.
int get_diskinfo_status(const char* name) {
    constexpr size_t kPiece = 1023;
    if (name == nullptr) return kStatusUnknown;
    const size_t length = strlen(name);
    LineFile file(open_for_reading(files::kDiskInfo), kPiece);
    for (char* line : file) {
        if (!starts_with(line, {name, length}) || line[length] != '=') continue;
        cut_at_line_feed(line);
        return code_of<diskinfo_code>(diskinfo_tbl, strchr(line, '=') + 1, kStatusUnknown);
    }
    return kStatusUnknown;
}
