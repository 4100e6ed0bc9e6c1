#include "report/disk_tools.h"

#include <string.h>

#include <algorithm>

#include "foundation/appliance_files.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/sources.h"
#include "report/tools.h"

namespace report {

namespace {

using quorvel::Text;

constexpr char kNoTools[] = "tools are not run";
constexpr char kNotTold[] = "the tool does not tell it";
constexpr int kAsleepStatus = 2;  // smartctl -n standby: the disk sleeps, and was left alone

bool is_internal(const DiskFacts& disk) {
    return disk.kind == DISK_PATH_INTERNAL && is_known(disk.slot);
}

// The text behind the first line that begins with a label.
[[nodiscard]] bool find_label(std::string_view text, std::string_view label, std::string_view& value) {
    while (!text.empty()) {
        std::string_view line = next_line(text);
        if (!line.starts_with(label)) continue;
        value = without_blanks(behind(line, label.size()));
        return true;
    }
    return false;
}

// ---- frontctl: lines "hddN=on" ----

// As the library reads it: the first line that holds "hddN" tells.
void take_power(DiskFacts& disk, const Tool& tool) {
    if (tool.reason != nullptr) return set_unknown(disk.powered, tool.reason);
    const Text<32> bay("hdd%d", static_cast<int>(disk.slot.value));
    for (std::string_view text = printed_by(tool); !text.empty();) {
        std::string_view line = next_line(text);
        if (line.find(bay.c_str()) == std::string_view::npos) continue;
        (void)next_field(line, "=");
        return set(disk.powered, line == "on");
    }
    set_unknown(disk.powered, kNotTold);
}

// ---- smartctl ----

void take_words(Words& words, std::string_view text, std::initializer_list<std::string_view> labels) {
    std::string_view value;
    for (std::string_view label : labels) {
        if (find_label(text, label, value) && !value.empty()) return set(words, value);
    }
}

// The number that begins field 10 of attribute 194, as the library reads it.
void take_temperature(Number& temperature, std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = next_line(text);
        if (!line.starts_with("194 ")) continue;
        char row[1024], value[1024];
        quorvel::copy_text(row, sizeof row, line);
        if (LibQuorvelBin_GetSpecifiedKey(value, sizeof value, row, " ", 10) == 0 && quorvel::is_digit(value[0]))
            return set(temperature, quorvel::leading_int(value));
    }
    set_unknown(temperature, kNotTold);
}

void take_drive(DiskFacts& disk, const Tool& tool) {
    const std::string_view text = printed_by(tool);
    const bool answered = tool.reason == nullptr;
    if (answered && tool.exit_status == kAsleepStatus && text.find("STANDBY") != std::string_view::npos) {
        set(disk.asleep, true);
        if (!is_known(disk.temperature_celsius)) set_unknown(disk.temperature_celsius, "the disk sleeps");
        return;
    }
    take_words(disk.model, text, {"Device Model:", "Product:"});
    take_words(disk.serial, text, {"Serial Number:", "Serial number:"});
    if (is_known(disk.temperature_celsius)) return;
    if (answered) take_temperature(disk.temperature_celsius, text);
    if (answered && is_known(disk.temperature_celsius)) set(disk.asleep, false);
    if (!answered) set_unknown(disk.temperature_celsius, tool.reason);
}

[[nodiscard]] Tool* add_drive_tool(List<Tool>& tools, const DiskFacts& disk) {
    Tool* tool = add(tools);
    if (tool == nullptr) return nullptr;
    tool->device.append(quorvel::files::kDevice, is_known(disk.name) ? text_of(disk.name) : text_of(disk.device));
    const char* words[] = {quorvel::files::kSmartctlTool, "-d", "marvell", "-n", "standby", "-i", "-A"};
    std::copy(std::begin(words), std::end(words), tool->arguments);
    return tool;
}

bool wants_drive(const DiskFacts& disk) {
    return is_internal(disk) && is_known(disk.device) && !(is_known(disk.asleep) && disk.asleep.value);
}

// ---- mdadm ----

void take_superblock_number(Number& number, std::string_view value) {
    char text[64];
    quorvel::copy_text(text, sizeof text, value);
    set_unless_negative(number, quorvel::leading_int(text), kNotTold);
}

// Keys stand anywhere in a line; the last line that has one holds, as the library reads it.
void take_superblock_line(DiskFacts& disk, std::string_view line) {
    const struct {
        std::string_view key;
        Words* words;
        Number* number;
    } rows[] = {
        {"UUID : ",            &disk.superblock_uuid,  nullptr                       },
        {"Preferred Minor : ", nullptr,                &disk.superblock_minor        },
        {"Raid Level : ",      &disk.superblock_level, nullptr                       },
        {"Raid Devices : ",    nullptr,                &disk.superblock_raid_devices },
        {"Total Devices : ",   nullptr,                &disk.superblock_total_devices},
    };
    for (const auto& row : rows) {
        const size_t found = line.find(row.key);
        if (found == std::string_view::npos) continue;
        const std::string_view value = behind(line, found + row.key.size());
        if (row.words != nullptr) set(*row.words, value);
        if (row.number != nullptr) take_superblock_number(*row.number, value);
        return;
    }
}

void set_superblock_unknown(DiskFacts& disk, const char* reason) {
    set_unknown(disk.superblock_uuid, reason);
    set_unknown(disk.superblock_level, reason);
    for (Number* number : {&disk.superblock_minor, &disk.superblock_raid_devices, &disk.superblock_total_devices})
        set_unknown(*number, reason);
}

// A member partition. mdadm begins what a superblock says with the path as it is given here, which is longer than any
// name in a superblock (64 bytes), so that no disk can have such a line of another one in its own.
constexpr char kMemberByALongWay[] =
    "/dev/./././././././././././././././././././././././././././././././././././././%s_%d";

struct Examined {
    DiskFacts* disk;
    quorvel::Text<160> path;
};

// Whose superblock begins with a line.
const Examined* examined_in(std::span<const Examined> disks, std::string_view line) {
    if (!line.ends_with(":")) return nullptr;
    const std::string_view path = front_of(line, line.size() - 1);
    const auto found =
        std::find_if(disks.begin(), disks.end(), [path](const Examined& disk) { return disk.path.c_str() == path; });
    return found != disks.end() ? &*found : nullptr;
}

void take_superblocks(std::span<const Examined> disks, const Tool& tool) {
    const char* reason = tool.reason != nullptr ? tool.reason : "no array superblock on the disk";
    for (const Examined& examined : disks)
        set_superblock_unknown(*examined.disk, reason);
    if (tool.reason != nullptr) return;
    const Examined* current = nullptr;
    for (std::string_view text = printed_by(tool); !text.empty();) {
        const std::string_view line = next_line(text);
        if (const Examined* begun = examined_in(disks, line)) {
            current = begun;
        } else if (current != nullptr) {
            take_superblock_line(*current->disk, line);
        }
    }
}

bool wants_superblock(const DiskFacts& disk, const Request& request) {
    if (!request.contents || !is_internal(disk) || !is_known(disk.device)) return false;
    return !is_known(disk.asleep) || !disk.asleep.value;
}

constexpr size_t kMostExamined = 16;
static_assert(2 + kMostExamined < Tool::kMostArguments);

// Every disk's member partition has the number behind the first "_" of the first disk's link.
int member_partition() {
    char link[128] = "";
    (void)LibQuorvelBin_GetConfValInStringByKey(link, sizeof link - 1, "DEVICE_HDD1_LINK");
    return quorvel::number_after(link, "_").value_or(0);
}

void run(List<Tool>& tools, const Request& request) {
    for (Tool& tool : tools) {
        if (!request.tools) tool.reason = kNoTools;
        for (const char*& argument : tool.arguments) {
            if (argument != nullptr || tool.device.length == 0) continue;
            argument = tool.device.c_str();
            break;
        }
    }
    if (request.tools) run_tools({tools.items, tools.count}, kToolMilliseconds);
}

// Whether one disk may have hidden what the others say.
bool hides_others(const Tool& tool) {
    return tool.reason == kTooLate || tool.reason == kCrashed || tool.cut;
}

// So many disks in one run of mdadm, or each by itself where one of them holds it up, crashes it or makes it print
// without end.
void examine(std::span<const Examined> disks, const Request& request, size_t at_once) {
    List<Tool> tools;
    for (size_t first = 0; first < disks.size(); first += at_once) {
        Tool* tool = add(tools);
        if (tool == nullptr) return;
        tool->arguments[0] = quorvel::files::kMdadmTool;
        tool->arguments[1] = "--examine";
        for (size_t i = 0; i < std::min(at_once, disks.size() - first); i++)
            tool->arguments[2 + i] = disks[first + i].path.c_str();
    }
    run(tools, request);
    for (const Tool& tool : tools) {
        const auto asked = disks.first(std::min(at_once, disks.size()));
        disks = disks.subspan(asked.size());
        if (hides_others(tool) && asked.size() > 1) {
            examine(asked, request, 1);
        } else {
            take_superblocks(asked, tool);
        }
    }
}

}  // namespace

void ask_drives(Facts& facts, const Request& request) {
    List<Tool> tools;
    Tool* power = add(tools);
    if (power == nullptr) return;
    power->arguments[0] = quorvel::files::kFrontTool;
    power->arguments[1] = "-a";
    power->arguments[2] = "hdd_set_power";
    for (const DiskFacts& disk : facts.disks) {
        if (wants_drive(disk) && add_drive_tool(tools, disk) == nullptr) return;
    }
    run(tools, request);
    size_t next = 1;
    for (DiskFacts& disk : facts.disks) {
        if (is_internal(disk)) take_power(disk, tools.items[0]);
        if (wants_drive(disk)) take_drive(disk, tools.items[next++]);
    }
}

void ask_superblocks(Facts& facts, const Request& request) {
    List<Examined> disks;
    const int partition = member_partition();
    for (DiskFacts& disk : facts.disks) {
        Examined* examined = wants_superblock(disk, request) ? add(disks) : nullptr;
        if (examined == nullptr) continue;
        examined->disk = &disk;
        examined->path.append(kMemberByALongWay, text_of(disk.name), partition);
    }
    examine({disks.items, disks.count}, request, kMostExamined);
}

}  // namespace report
