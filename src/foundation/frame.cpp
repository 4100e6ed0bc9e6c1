// The frame every exported function runs in: the two globals, and the level's configuration file.
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/numbers.h"
#include "quorvel/foundation.h"

using namespace quorvel;

int32_t debug = 0;
int32_t from_cmdline = 0;

int LibQuorvelBin_DebugLevelInit(void) {
    char value[128] = "";
    if (get_StringbyKey(files::kLibraryConfig, "debug", value, sizeof value) == nullptr) return 0;
    debug = low_int(value);
    return printf("debug=%d\n", debug);
}

void LibQuorvelBin_Sync(void) {
    sync();
}
