#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <charconv>

#include "libquorvel_bin.h"
#include "telling.h"

namespace {

constexpr char kFeatures[] = "/etc/nas_feature";

// The library itself prints the value, or "wrong feature name".
int run_feature(int, char** argv) {
    if (LibQuorvelBin_GetConfValByKey(argv[2]) != -1) return kExitOk;
    char value[2];
    bool is_set = get_StringbyKey(kFeatures, argv[2], value, sizeof value) != nullptr;
    return no_answer(argv[1], argv[2],
                     is_set ? "set to -1" : reason_of_file(kFeatures, "no such key in /etc/nas_feature"));
}

// The firmware's tools get key and value through a shell, unquoted, as their interface says.
bool is_left_alone_by_a_shell(const char* text) {
    for (; *text != '\0'; text++) {
        unsigned char c = static_cast<unsigned char>(*text);
        if (c <= ' ' || c == 0x7f || strchr("|&;<>()$`\\\"'*?[]#~{}!", c) != nullptr) return false;
    }
    return true;
}

int run_set_feature(int, char** argv) {
    for (const char* text : {argv[2], argv[3]}) {
        if (is_left_alone_by_a_shell(text)) continue;
        fputs("set_feature: a shell would act on a character of KEY or VALUE; nothing was changed\n", stderr);
        return kExitRefused;
    }
    return exit_status_of_result(LibQuorvelBin_SetConfValInString(argv[2], argv[3]));
}

// The library itself prints the name.
int run_username(int, char** argv) {
    const char* end = argv[2] + strlen(argv[2]);
    uint32_t uid = 0;
    auto [stop, error] = std::from_chars(argv[2], end, uid);
    if (error != std::errc() || stop != end) {
        fprintf(stderr, "%s: %s: '%s' is no user id\n", argv[0], argv[1], argv[2]);
        return kExitUsage;
    }
    char name[256];
    if (LibQuorvelBin_GetUsernameByUID(uid, name, sizeof name) == 0) return kExitOk;
    return no_answer(argv[1], argv[2], "no such user");
}

// The library itself prints the day.
int run_tomorrow(int, char**) {
    char day[16];
    return exit_status_of_result(LibQuorvelBin_Tomorrow(day, sizeof day));
}

int run_day_after(int, char** argv) {
    char day[16];
    if (LibQuorvelBin_DayAfter(argv[2], day, sizeof day) == 0) return kExitOk;
    return no_answer(argv[1], argv[2], "no day of the calendar, YYYY-MM-DD");
}

// The converter is called by its name: as a pointer the loader would look it up at every start.
template <char* (*Convert)(char*, size_t, const char*)>
int run_converter(int, char** argv) {
    const char* text = argv[2];
    // Enough for the longest sequences and shift states a byte can become.
    size_t size = strlen(text) * 8 + 16;
    char* converted = static_cast<char*>(malloc(size));
    const char* result = converted != nullptr ? Convert(converted, size, text) : nullptr;
    if (result != nullptr) puts(result);
    free(converted);
    return result != nullptr ? kExitOk : no_answer(argv[1], nullptr, "no converter for the code page, or no memory");
}

int run_file_exists(int, char** argv) {
    return IsFileExist(argv[2]) == 1 ? kExitOk : kExitNo;
}

int run_dir_exists(int, char** argv) {
    return IsDirExist(argv[2]) == 1 ? kExitOk : kExitNo;
}

// The library itself prints the record.
int run_firminfo(int, char** argv) {
    struct firm_info info;
    if (Firminfo_GetFirmInfo(&info) == 0) return kExitOk;
    return no_answer(argv[1], nullptr, reason_of_errno("there is no record"));
}

// clang-format off
constexpr Command kCommands[] = {
    {"feature",     "KEY",       "print a feature setting of the model",                "0 found, 1 missing", 1, 1, run_feature},
    {"set_feature", "KEY VALUE", "change a feature setting through the firmware tools", "0 done, 1 no tool, 3 refused", 2, 2, run_set_feature},
    {"username",    "UID",       "print the name of a user id",                         "0 found, 1 no such user, 2 no user id", 1, 1, run_username},
    {"tomorrow",    "",          "print the calendar day after today",                  "0 printed",          0, 0, run_tomorrow},
    {"day_after",   "YYYY-MM-DD", "print the calendar day after a given one",           "0 printed, 1 no such day", 1, 1, run_day_after},
    {"to_utf8",     "TEXT",      "print a text of the code page in UTF-8",              "0 printed, 1 no converter", 1, 1, run_converter<remote2local_UTF8>},
    {"from_utf8",   "TEXT",      "print a UTF-8 text in the code page",                 "0 printed, 1 no converter", 1, 1, run_converter<local2remote_UTF8>},
    {"file_exists", "FILE",      "whether a regular file is there and readable",        "0 yes, 1 no",        1, 1, run_file_exists},
    {"dir_exists",  "DIRECTORY", "whether a directory is there and readable",           "0 yes, 1 no",        1, 1, run_dir_exists},
    {"firminfo",    "",          "print the firmware information record",               "0 printed, 1 unknown", 0, 0, run_firminfo},
};
// clang-format on

}  // namespace

const std::span<const Command> kFoundationCommands = kCommands;
