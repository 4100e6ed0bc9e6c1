#include "services/backup_generations.h"

#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include "foundation/files.h"
#include "foundation/look.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "services/backup_location.h"

using namespace quorvel;

namespace {

// Names are digits only; those longer than a time stamp are held to the largest number.
int64_t generation_number(const char* name) {
    return leading_number(name);
}

// The greatest name in a task's directory but `own`: a run that is under way may have made that already for an earlier
// pair, and nothing can be linked from a destination to itself.
struct LastGeneration {
    Text<256> own, last;  // empty when there is none
};

bool find_last(const char* task_directory, void* answer) {
    auto& [own, last] = *static_cast<LastGeneration*>(answer);
    Directory directory = open_directory(task_directory);
    while (const struct dirent* entry = directory ? readdir(directory.get()) : nullptr) {
        if (!is_all_digits(entry->d_name) || view(own) == entry->d_name) continue;
        if (last.length != 0 && generation_number(entry->d_name) <= generation_number(last.c_str())) continue;
        last = Text<256>("%s", entry->d_name);
    }
    if (directory && last.length == 0) errno = ENODATA;
    return last.length != 0;
}

// How many levels a path leads down. It has no component "..".
int depth(const char* path) {
    int levels = 0;
    for (path += strspn(path, "/"); *path != '\0'; path += strspn(path, "/")) {
        std::string_view component(path, strcspn(path, "/"));
        if (component != ".") levels++;
        path += component.size();
    }
    return levels;
}

}  // namespace

GenerationName quorvel::name_generation() {
    time_t now = time(nullptr);
    struct tm local = {};
    tzset();
    (void)localtime_r(&now, &local);
    return GenerationName("%04d%02d%02d%02d%02d%02d", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                          local.tm_hour, local.tm_min, local.tm_sec);
}

int LibQuorvelBin_GetLastDestTarget(char* dst, size_t size, const char* destination, size_t generation) {
    const char* own = destination + generation;
    const char* behind = own + strcspn(own, "/");
    Text<kAddressText> task_directory("%.*s", static_cast<int>(generation), destination);
    LastGeneration generations;
    generations.own.add({own, behind});
    if (!look_in_time({find_last, task_directory, &generations, sizeof generations})) return -1;

    Text<kLinkTarget> target;
    for (int level = depth(own); level > 0; level--)
        target.append("../");
    target.append("%s%s", generations.last.c_str(), behind);
    if (target.cut || target.length >= size) {
        printf("%s : Warning! buffer is too short!\n", __func__);
        return -1;
    }
    copy_text(dst, size, target.c_str());
    return 0;
}
