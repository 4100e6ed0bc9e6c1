#include "hw/nand_erase.h"

#include <stdio.h>

#include <optional>
#include <string_view>

#include "foundation/appliance_files.h"
#include "foundation/child.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/shell.h"
#include "foundation/text.h"
#include "quorvel/hw.h"

using namespace quorvel;

namespace {

constexpr char kNandBoot[] = "EnableNandBoot";
constexpr size_t kLine = 1024;

using Line = Text<kLine + 1>;
using Device = Text<32>;
using Command = Text<kCommandSize>;

// What the shell could not find or execute was not started, and neither was what nobody can tell of: this is about a
// board that still has to boot afterwards.
[[nodiscard]] bool was_started(CommandOutput& command) {
    const int status = command.finish();
    return status != -1 && !could_not_execute(status);
}

// The text in front of the first colon of the first line that shows the partition's name; empty when there is none.
//   mtd2: 00040000 00010000 "nboot"
Line find_mtd(const char* name) {
    LineFile list(open_for_reading(files::kMtdList), kLine);
    if (!list) puts("Can't open /proc/mtd (don't mount procfs?)");
    Line quoted("\"%s\"", name);
    Line mtd;
    for (std::string_view piece; !quoted.cut && !(piece = next_piece(list.reader)).empty();) {
        if (piece.find(view(quoted)) == piece.npos) continue;
        const size_t length = piece.find(':');
        if (length != piece.npos) mtd.add(front_of(piece, length));
        if (length == piece.npos && piece.size() == kLine) puts("Not enough area!");
        break;
    }
    return mtd;
}

// The character device of one of the first eight MTD devices, otherwise empty.
Device device_of(const Line& mtd) {
    constexpr int kDevices = 8;
    Device device;
    for (int number = 0; number < kDevices && device.length == 0; number++) {
        if (view(Device("mtd%d", number)) == view(mtd)) device.append(files::kMtdCharacterDevice, number);
    }
    return device;
}

}  // namespace

int get_nand_boot(void) {
    CommandOutput command(Command("%s -c get %s", files::kBootSettingsTool, kNandBoot), kLine);
    std::optional<int> setting;
    for (char* line : command) {
        setting = number_after(line, "=");
        if (setting) break;
    }
    return was_started(command) ? setting.value_or(0) : -1;
}

int clear_nand_boot(void) {
    CommandOutput command(Command("%s -c set %s %d", files::kBootSettingsTool, kNandBoot, 0), kLine);
    bool line_ended = true;
    for (std::string_view piece; !(piece = next_piece(command.lines)).empty(); line_ended = piece.ends_with('\n'))
        fwrite(piece.data(), 1, piece.size(), stdout);  // what nobody can see changes nothing
    if (!line_ended) putchar('\n');
    return was_started(command) ? 0 : -1;
}

int erase_mtd_by_name(const char* name) {
    if (name == nullptr) return fail(EINVAL);
    Device device = device_of(find_mtd(name));
    printf("Erasing %s ...\n", device.c_str());
    (void)fflush(stdout);  // as above

    Command text("%s %s", files::kFlashEraseTool, device.c_str());
    CommandOutput command(text, kLine);
    while (!next_piece(command.lines).empty()) {
    }
    if (was_started(command)) return 0;
    printf("Command execute failed(cmd=%s)\n", text.c_str());
    return fail(ENOPKG);
}

int LibQuorvelBin_NandErase(void) {
    // Between the setting and the second partition the appliance has nothing whole to boot from.
    HeldSignals until_erased;
    if (get_nand_boot() != 0 && clear_nand_boot() != 0) {
        puts("Warning! Disabling NandBoot failed!");
        return 3;
    }
    if (erase_mtd_by_name("nboot") != 0) return 1;
    return erase_mtd_by_name("nroot") != 0 ? 2 : 0;
}
