// Changing a feature setting: the firmware's own tools keep the store that /etc/nas_feature is made
// from.
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/shell.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

using Command = Text<kCommandSize>;

int change_by_setnf(const char* key, const char* value) {
    Command set("%s %s %s", files::kSetFeatureTool, key, value);
    if (set.cut) return -1;
    (void)run_command(set);
    if (path_exists(files::kDumpFeatureTool)) {
        (void)run_command(Command("%s > %s", files::kDumpFeatureTool, files::kFeature));
        return 0;
    }
    puts("This system looks like don't support dumpnf command.");
    puts("Warn! : setnf command was found, but dumpnf command is not found!");
    puts("        maybe need to restart to reflect this change!");
    return 0;
}

// The line is only appended: readers keep the first, old line until the firmware makes the file
// anew.
int change_by_nvram(const char* key, const char* value) {
    Command set("%s -c set %s %s", files::kNvramTool, key, value);
    Command append("echo %s=%s >> %s", key, value, files::kFeature);
    if (set.cut || append.cut) return -1;
    (void)run_command(set);
    (void)run_command(append);
    puts("Warn! : Easily reflected to nas_feature.");
    puts("        You need to check by restart process to reflect this change!");
    return 0;
}

}  // namespace

int LibQuorvelBin_SetConfValInString(const char* key, const char* value) {
    if (key == nullptr || value == nullptr) return -1;
    if (path_exists(files::kSetFeatureTool)) return change_by_setnf(key, value);
    puts("This system looks like don't support setnf command.");
    if (path_exists(files::kNvramTool)) return change_by_nvram(key, value);
    puts("This system looks like don't support nvram command.");
    printf("%s : set feature failed!\n", __func__);
    return -1;
}
