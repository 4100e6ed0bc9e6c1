#include "settings_list.h"

#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/look.h"
#include "foundation/open_in_time.h"

using namespace quorvel;

namespace {

constexpr size_t kMostText = size_t{1} << 20;

[[nodiscard]] bool read_all(int descriptor, SettingsList& list) {
    list.text.reset(static_cast<char*>(malloc(kMostText + 2)));
    if (list.text == nullptr) return false;
    ssize_t length = read_fully(descriptor, list.text.get(), kMostText + 1);
    if (length < 0) return false;
    if (static_cast<size_t>(length) > kMostText) return errno = EFBIG, false;
    list.length = static_cast<size_t>(length);
    return true;
}

[[nodiscard]] const char* look_at_entry(Change& change, bool may_add) {
    struct stat status;
    if (!read_status(change.place.file, status)) return strerror(errno);
    if (!S_ISREG(status.st_mode)) return "the key's file is no regular file";
    change.device = status.st_dev;
    change.inode = status.st_ino;
    change.present = read_setting(change.place, change.former);
    if (change.present) {
        const char* fault = fault_of_value(change.place, change.former);
        return fault != nullptr ? "the present value could not be given back" : nullptr;
    }
    if (change.value == nullptr) return "there is no such entry to remove";
    return may_add ? nullptr : "there is no such entry (--add adds it)";
}

bool same_entry(const Change& one, const Change& other) {
    return one.inode == other.inode && one.device == other.device && strcmp(one.place.name, other.place.name) == 0;
}

// "KEY=VALUE" or "-KEY"; the parts are terminated in place.
[[nodiscard]] const char* take_line_apart(char* text, size_t length, Change& change) {
    char* equals = static_cast<char*>(memchr(text, '=', length));
    if (equals == nullptr && *text != '-') return "neither KEY=VALUE nor -KEY";
    change.key = equals == nullptr ? text + 1 : text;
    char* end = text + length;
    std::string_view key(change.key, static_cast<size_t>((equals != nullptr ? equals : end) - change.key));
    const char* fault = find_place(key, change.place);
    if (fault == nullptr && equals != nullptr) {
        fault = fault_of_value(change.place, {equals + 1, static_cast<size_t>(end - equals - 1)});
    }
    change.value = equals != nullptr ? equals + 1 : nullptr;
    if (equals != nullptr) *equals = '\0';
    *end = '\0';
    return fault;
}

[[nodiscard]] Change* add_change(SettingsList& list) {
    constexpr size_t kStep = 64;
    if (list.count % kStep == 0) {
        void* grown = realloc(list.changes.get(), (list.count + kStep) * sizeof(Change));
        if (grown == nullptr) return nullptr;
        (void)list.changes.release();
        list.changes.reset(static_cast<Change*>(grown));
    }
    return &list.changes.get()[list.count++];
}

[[nodiscard]] const char* check_line(SettingsList& list, Change& change, char* text, size_t length, bool may_add) {
    const char* fault = take_line_apart(text, length, change);
    if (fault == nullptr) fault = look_at_entry(change, may_add);
    if (fault != nullptr) return fault;
    for (const Change& earlier : list) {
        if (&earlier != &change && same_entry(earlier, change)) return "an earlier line names the same entry";
    }
    return nullptr;
}

}  // namespace

const char* read_list(const char* path, SettingsList& list) {
    if (strcmp(path, "-") == 0) return read_all(STDIN_FILENO, list) ? nullptr : strerror(errno);
    mode_t type;
    Descriptor file = open_in_time(path, type);
    if (type == S_IFREG && read_all(file.number, list)) return nullptr;
    const bool failed = type == S_IFREG || (type == 0 && errno != EINVAL);
    return failed ? strerror(errno) : "no regular file; \"-\" reads standard input";
}

int check_list(SettingsList& list, bool may_add) {
    int faults = 0;
    size_t number = 0;
    char* text = list.text.get();
    for (char *end = text + list.length, *next; text < end; text = next) {
        char* feed = static_cast<char*>(memchr(text, '\n', static_cast<size_t>(end - text)));
        next = feed != nullptr ? feed + 1 : end;
        size_t length = static_cast<size_t>((feed != nullptr ? feed : end) - text);
        number++;
        while (length > 0 && (*text == ' ' || *text == '\t')) {
            text++;
            length--;
        }
        if (length == 0 || *text == '#') continue;
        Change* change = add_change(list);
        if (change == nullptr) return -1;
        *change = {};
        change->line = number;
        const char* fault = check_line(list, *change, text, length, may_add);
        if (fault == nullptr) continue;
        fprintf(stderr, "config apply: line %zu: %s\n", number, fault);
        list.count--;
        faults++;
    }
    return faults;
}
