#include "hw/nand_erase.h"

#include <stdio.h>

#include <string_view>

#include "foundation/appliance_files.h"
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

// What the shell could not find or execute was not started, and neither was what nobody can tell of: this is about a
// board that still has to boot afterwards.
bool was_started(CommandOutput& command) {
    const int status = command.finish();
    return status != -1 && !could_not_execute(status);
}

// The text in front of the first colon of the first line that shows the partition's name; empty when there is none.
//   mtd2: 00040000 00010000 "nboot"
void find_mtd(const char* name, Line& mtd) {
    Descriptor list = open_for_reading(files::kMtdList);
    if (!list) {
        puts("Can't open /proc/mtd (don't mount procfs?)");
        return;
    }
    Line quoted("\"%s\"", name);
    LineReader lines(list.number, kLine);
    for (std::string_view piece; !quoted.cut && !(piece = next_piece(lines)).empty();) {
        if (piece.find(quoted.c_str()) == std::string_view::npos) continue;
        const size_t length = piece.find(':');
        if (length != std::string_view::npos) {
            mtd.append("%.*s", static_cast<int>(length), piece.data());
        } else if (piece.size() == kLine) {
            puts("Not enough area!");
        }
        return;
    }
}

// The character device of one of the first eight MTD devices, otherwise empty.
Device device_of(const char* name) {
    constexpr int kDevices = 8;
    const int number = number_after(name, "mtd").value_or(-1);
    Device device;
    if (number < 0 || number >= kDevices) return device;
    if (std::string_view(Device("mtd%d", number).c_str()) == name) device.append(files::kMtdCharacterDevice, number);
    return device;
}

}  // namespace

int get_nand_boot(void) {
    CommandOutput command(Text<kCommandSize>("nvram -c get %s", kNandBoot), kLine);
    std::optional<int> setting;
    for (char* line : command) {
        setting = number_after(line, "=");
        if (setting) break;
    }
    return was_started(command) ? setting.value_or(0) : -1;
}

int clear_nand_boot(void) {
    CommandOutput command(Text<kCommandSize>("nvram -c set %s %d", kNandBoot, 0), kLine);
    bool line_ended = true;
    for (std::string_view piece; !(piece = next_piece(command.lines)).empty(); line_ended = piece.ends_with('\n'))
        (void)fwrite(piece.data(), 1, piece.size(), stdout);
    if (!line_ended) putchar('\n');
    return was_started(command) ? 0 : -1;
}

int erase_mtd_by_name(const char* name) {
    if (name == nullptr) return -1;
    Line mtd;
    find_mtd(name, mtd);
    Device device = device_of(mtd.c_str());
    printf("Erasing %s ...\n", device.c_str());
    (void)fflush(stdout);

    Text<kCommandSize> text("flash_eraseall %s", ShellWord(device.c_str()).c_str());
    CommandOutput command(text, kLine);
    while (!next_piece(command.lines).empty()) {
    }
    if (was_started(command)) return 0;
    printf("Command execute failed(cmd=%s)\n", text.c_str());
    return -1;
}

int LibQuorvelBin_NandErase(void) {
    HeldSignals held;
    if (get_nand_boot() != 0 && clear_nand_boot() != 0) {
        puts("Warning! Disabling NandBoot failed!");
        return 3;
    }
    if (erase_mtd_by_name("nboot") != 0) return 1;
    return erase_mtd_by_name("nroot") != 0 ? 2 : 0;
}
