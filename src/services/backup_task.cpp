#include "services/backup_task.h"

#include <limits.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <span>

#include "foundation/appliance_files.h"
#include "foundation/code_table.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr CodeName status_list[] = {
    {3, "ready"},
    {1, "err"  },
    {2, "run"  },
    {4, "done" },
};

constexpr CodeName type_list[] = {
    {1, "day" },
    {2, "week"},
    {3, "now" },
};

constexpr CodeName week_list[] = {
    {1, "Sun"},
    {2, "Mon"},
    {3, "Tue"},
    {4, "Wed"},
    {5, "Thu"},
    {6, "Fri"},
    {7, "Sat"},
};

constexpr CodeName on_off_list[] = {
    {kOn, "on" },
    {2,   "off"},
};

// How a setting is read and printed. Each kind uses the columns of its own.
enum class Kind { kCode, kText, kStartTime, kGeneration };

constexpr char kFolder[] = "folder";

// The keys of a task file, in the order in which the settings are printed.
struct Setting {
    const char* key;
    Kind kind;
    std::span<const CodeName> list;
    int BackupTask::*code = nullptr;
    Heap<char> BackupTask::*text = nullptr;
};

// clang-format off
constexpr Setting conf_list[] = {
    {"status",     Kind::kCode,       status_list, &BackupTask::status},
    {"type",       Kind::kCode,       type_list,   &BackupTask::type},
    {"start_time", Kind::kStartTime,  {}},
    {"week",       Kind::kCode,       week_list,   &BackupTask::week_day},
    {"overwrite",  Kind::kCode,       on_off_list, &BackupTask::overwrite},
    {"crypt",      Kind::kCode,       on_off_list, &BackupTask::crypt},
    {"compress",   Kind::kCode,       on_off_list, &BackupTask::compress},
    {kFolder,      Kind::kText,       {},          nullptr, &BackupTask::folder},
    {"trashbox",   Kind::kCode,       on_off_list, &BackupTask::trashbox},
    {"mirror",     Kind::kCode,       on_off_list, &BackupTask::mirror},
    {"logfile",    Kind::kCode,       on_off_list, &BackupTask::logfile},
    {"force",      Kind::kCode,       on_off_list, &BackupTask::force},
    {"name",       Kind::kText,       {},          nullptr, &BackupTask::name},
    {"hardlink",   Kind::kCode,       on_off_list, &BackupTask::hardlink},
    {"generation", Kind::kGeneration, {}},
};
// clang-format on

// The first value stays, even an empty one.
void take_text(Heap<char>& text, const char* value) {
    if (text) {
        puts("Warning! specified dest already have a velue");
        return;
    }
    text.reset(strdup(value));
    if (!text) puts("Malloc failed");
}

// "hour:minute"; a missing part is 0.
void take_start_time(BackupTask& task, const char* value) {
    char hour[kTaskLine] = "";
    char minute[kTaskLine] = "";
    (void)LibQuorvelBin_GetSpecifiedKey(hour, sizeof hour, value, ":", 1);
    (void)LibQuorvelBin_GetSpecifiedKey(minute, sizeof minute, value, ":", 2);
    bool valid = true;
    for (const char* part : {hour, minute})
        valid = valid && (*part == '\0' || is_all_digits(part));
    task.hour = valid ? leading_int(hour) : -1;
    task.minute = valid ? leading_int(minute) : -1;
}

void take_setting(BackupTask& task, const Setting& setting, const char* value) {
    switch (setting.kind) {
        case Kind::kCode:
            task.*setting.code = code_of(setting.list, value, -1);
            break;
        case Kind::kText:
            take_text(task.*setting.text, value);
            break;
        case Kind::kStartTime:
            take_start_time(task, value);
            break;
        case Kind::kGeneration:
            task.keep_generation = is_all_digits(value) ? leading_int(value) : -1;
            break;
    }
}

// The last entry of a list that was cut is another one than the list's.
void drop_last_entry(char* list) {
    size_t separator = std::string_view(list).rfind("<>");
    list[separator != std::string_view::npos ? separator : 0] = '\0';
}

void take_line(BackupTask& task, const char* line, bool cut) {
    char key[kTaskLine] = "";
    char value[kTaskLine] = "";
    (void)LibQuorvelBin_GetSpecifiedKey(key, sizeof key, line, "=", 1);
    (void)LibQuorvelBin_GetSpecifiedKey(value, sizeof value, line, "=", 2);
    if (cut && strcmp(key, kFolder) == 0) drop_last_entry(value);
    for (const Setting& setting : conf_list) {
        if (strcmp(key, setting.key) == 0) return take_setting(task, setting, value);
    }
}

// Every line up to kTaskLine - 1 characters; the rest of a longer one is no line of its own.
void take_lines(BackupTask& task, LineFile& file) {
    bool inside = false;
    for (char* line : file) {
        bool begins = !inside;
        inside = strlen(line) == kTaskLine && line[kTaskLine - 1] != '\n';
        if (!begins) continue;
        if (inside) fprintf(stderr, "backup: task %d has a line above %zu characters\n", task.number, kTaskLine - 1);
        line[inside ? kTaskLine - 1 : strcspn(line, "\n")] = '\0';
        take_line(task, line, inside);
    }
}

// In the appliance's code page, where what UTF-8 would read as a control character may be two others.
void print_setting_text(const char* text) {
    for (; *text != '\0'; text++)
        putchar(is_control_byte(*text) ? '?' : *text);
}

}  // namespace

void quorvel::print_task(const BackupTask& task) {
    for (const Setting& setting : conf_list) {
        switch (setting.kind) {
            case Kind::kCode:
                printf("%s=%s\n", setting.key, name_of(setting.list, task.*setting.code, "Unknown"));
                break;
            case Kind::kText:
                printf("%s=", setting.key);
                print_setting_text(text_or_empty(task.*setting.text));
                putchar('\n');
                break;
            case Kind::kStartTime:
                printf("%s=%d:%02d\n", setting.key, task.hour, task.minute);
                break;
            case Kind::kGeneration:
                printf("keep_generation=%d\n", task.keep_generation);
                break;
        }
    }
}

bool quorvel::is_safe_for_rsync(const char* text) {
    bool control = false;
    bool climbs = false;
    bool option = false;
    // "@" ends a host, in front of what may become an address of its own.
    constexpr char kEnds[] = "/@ ";
    for (const char* part = text;; part++) {
        std::string_view component(part, strcspn(part, kEnds));
        control = control || std::any_of(component.begin(), component.end(), is_control_byte);
        climbs = climbs || component == "..";
        option = option || (component.starts_with('-') && (part == text || part[-1] != '/'));
        part += component.size();
        if (*part == '\0') break;
    }
    if (!control && !climbs && !option) return true;
    fputs("backup: a folder entry or name with a control byte, a \"..\" or a word that begins with \"-\" is left out\n",
          stderr);
    return false;
}

std::optional<BackupPair> quorvel::find_pair(const BackupTask& task, int number) {
    if (number < 1 || number > INT_MAX / 2) return {};
    const char* list = text_or_empty(task.folder);
    BackupPair pair;
    if (LibQuorvelBin_GetSpecifiedKey(pair.source, kTaskLine, list, "<>", 2 * number - 1) != 0) return {};
    if (LibQuorvelBin_GetSpecifiedKey(pair.destination, kTaskLine, list, "<>", 2 * number) != 0) return {};
    if (!is_safe_for_rsync(pair.source) || !is_safe_for_rsync(pair.destination)) return {};
    return pair;
}

int LibQuorvelBin_LoadTaskInfo(const char* number, BackupTask* task) {
    if (!is_all_digits(number)) {
        printf("%s : -1\n", __func__);
        return fail(EINVAL);
    }
    task->number = leading_int(number);
    LineFile file(open_for_reading(Text<64>(files::kBackupTask, task->number)), kTaskLine);
    take_lines(*task, file);
    return 0;
}
