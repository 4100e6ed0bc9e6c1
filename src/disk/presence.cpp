// Whether a slot holds a disk and has power, and which disk is behind a SCSI host.
#include <stdio.h>
#include <string.h>

#include "disk/disk_name.h"
#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/shell.h"
#include "foundation/trace.h"
#include "quorvel/naming.h"

using namespace quorvel;

int LibQuorvelBin_IsConnectedDisk(int slot_index) {
    constexpr size_t kPiece = 126;
    LineFile hotplug(open_for_reading(Text<64>(files::kSlotHotplug, slot_index)), kPiece);
    if (!hotplug) return path_exists(Text<32>(files::kSlotNode, number_moved(slot_index, 1))) ? 1 : 0;
    char* state = next_line(hotplug.reader);
    if (state == nullptr) return 0;
    cut_at_line_feed(state);
    return strcmp(state, "plugged") == 0 ? 1 : 0;
}

int LibQuorvelBin_IsPowerSupplyedDisk(int slot_index) {
    Text<128> command("%s -a hdd_set_power |%s hdd%d", files::kFrontTool, files::kGrepTool,
                      number_moved(slot_index, 1));
    Heap<char> output = capture_command(command).output;
    if (!output) return 0;
    cut_at_line_feed(output.get());
    const char* equals = strchr(output.get(), '=');
    return equals != nullptr && strcmp(equals + 1, "on") == 0 ? 1 : 0;
}

int LibQuorvelBin_GetScsinameFromDisknumber(int host, char* dst, size_t size) {
    if (dst == nullptr) return fail(EINVAL);
    Directory target = open_directory(Text<128>(files::kScsiHostTarget, host, host, host));
    if (!target) {
        int reason = errno;
        puts("opendir failed");
        return fail(reason);
    }
    while (const struct dirent* entry = readdir(target.get())) {
        trace(kTraceDetail, "dent->d_name=%s\n", entry->d_name);
        if (!contains(entry->d_name, "block:")) continue;
        const char* name = strchr(entry->d_name, ':') + 1;
        size_t length = strcspn(name, "\n");
        if (length <= kShortName || length < size) copy_text(dst, length + 1, {name, length});
        break;
    }
    return 0;
}
