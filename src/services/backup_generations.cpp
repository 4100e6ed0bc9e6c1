#include "services/backup_generations.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include <algorithm>

#include "foundation/files.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "services/backup_location.h"

using namespace quorvel;

namespace {

// Names longer than a time stamp are held to the largest number.
uint64_t generation_number(const char* name) {
    return strtoull(name, nullptr, 10);
}

// The greatest name in a task's directory but `own`: a run that is under way may have made that
// already for an earlier pair, and nothing can be linked from a destination to itself.
bool find_last(const char* task_directory, std::string_view own, Text<256>& last) {
    Directory directory = open_directory(task_directory);
    if (!directory) return false;
    bool found = false;
    while (const struct dirent* entry = readdir(directory.get())) {
        if (is_dot_entry(entry->d_name) || !is_all_digits(entry->d_name) || own == entry->d_name) continue;
        if (found && generation_number(entry->d_name) <= generation_number(last.c_str())) continue;
        last = Text<256>("%s", entry->d_name);
        found = true;
    }
    return found;
}

// How many levels a path leads down.
int depth(const char* path) {
    int levels = 0;
    for (path += strspn(path, "/"); *path != '\0'; path += strspn(path, "/")) {
        std::string_view component(path, strcspn(path, "/"));
        if (component == "..") levels--;
        if (component != ".." && component != ".") levels++;
        path += component.size();
    }
    return std::max(levels, 0);
}

}  // namespace

void quorvel::name_generation(char (&name)[kGenerationName]) {
    time_t now = time(nullptr);
    struct tm local = {};
    tzset();
    (void)localtime_r(&now, &local);
    (void)snprintf(name, sizeof name, "%04d%02d%02d%02d%02d%02d", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                   local.tm_hour, local.tm_min, local.tm_sec);
}

int LibQuorvelBin_GetLastDestTarget(char* dst, size_t size, const char* destination, size_t generation) {
    const char* own = destination + generation;
    const char* behind = own + strcspn(own, "/");
    Text<kAddressText> task_directory("%.*s", static_cast<int>(generation), destination);
    Text<256> last;
    if (!find_last(task_directory.c_str(), {own, behind}, last)) return -1;

    Text<kLinkTarget> target;
    for (int level = depth(own); level > 0; level--)
        target.append("../");
    target.append("%s%s", last.c_str(), behind);
    if (target.cut || target.length >= size) {
        printf("%s : Warning! buffer is too short!\n", __func__);
        return -1;
    }
    copy_text(dst, size, target.c_str());
    return 0;
}
