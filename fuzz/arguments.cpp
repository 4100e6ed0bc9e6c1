// The texts that callers hand over: arguments, names, keys, and whole command lines.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <initializer_list>

#include "libquorvel_bin.h"
#include "surroundings.h"

namespace {

constexpr size_t kLongest = 4096;
char given[kLongest + 1];  // terminated
size_t given_size;
char answer[kLongest + 1];

// The fields as strtok finds them on a copy, to compare with.
bool reference_field(const char* text, const char* delimiters, int index, char* field) {
    static char copy[kLongest + 1];
    size_t length = strlen(text);
    memcpy(copy, text, length + 1);
    (void)strtok(copy, "\n");
    if (index <= 0) return strcpy(field, copy) != nullptr;
    char* token = strtok(copy, delimiters);
    while (token != nullptr && --index > 0) {
        char* end = token + strlen(token);
        token = end >= copy + length ? nullptr : strtok(end + 1, delimiters);
    }
    return token != nullptr && strcpy(field, token) != nullptr;
}

void cut_fields() {
    static char expected[kLongest + 1];
    int index = given[0] % 16;
    char delimiters[3] = {given[0] != '\0' ? given[1] : '\0', ' ', '\0'};
    const char* text = strlen(given) > 2 ? given + 2 : "";
    bool found = LibQuorvelBin_GetSpecifiedKey(answer, sizeof answer, text, delimiters, index) == 0;
    if (found != reference_field(text, delimiters, index, expected)) abort();
    if (found && strcmp(answer, expected) != 0) abort();
}

void read_numbers() {
    struct os_version version;
    struct ip_record address;
    (void)LibQuorvelBin_HexToUl(given, given[0]);
    (void)LibQuorvelBin_GetOsVerFromString(&version, given);
    memset(&address, 0, sizeof address);
    memcpy(address.sz_ip, given, std::min(strlen(given), sizeof address.sz_ip));
    (void)LibQuorvelBin_IpAtoU(&address);
    (void)LibQuorvelBin_GetMaskSize(&address);
    (void)LibQuorvelBin_GetInterfaceIndex(given);
    (void)LibQuorvelBin_DayAfter(given, answer, sizeof answer);
}

void map_names() {
    (void)LibQuorvelBin_GetDisknameFromDevname(given, answer, 32);
    (void)LibQuorvelBin_GetDevnameFromDiskname(given, answer, 32);
    (void)LibQuorvelBin_GetScsiIDFromDiskname(given, answer, 32);
    (void)get_bus_number_from_udevid(given);
    (void)IsMyDisk(given);
    from_cmdline = 1;
}

void read_registry() {
    for (const char* operation : {"read", "write", "delete"}) {
        char* arguments[] = {given, given, const_cast<char*>(operation), given, given, nullptr};
        (void)LibQuorvelBin_ConfigHelper(strcmp(operation, "write") == 0 ? 5 : 4, arguments);
    }
}

void edit_texts() {
    size_t length = strlen(given);
    (void)LibQuorvelBin_IsContainedInStringList(given, "sda", ",");
    (void)LibQuorvelBin_IsContainedInStringList("a,b", given, given);
    (void)LibQuorvelBin_GetLastWord(answer, given, "/", 16);
    (void)LibQuorvelBin_AvoidLastWord(answer, given, "/");
    (void)LibQuorvelBin_Basename(answer, given, 128);
    (void)LibQuorvelBin_URLEncode(answer, given, 64);
    (void)remote2local_UTF8(answer, 64, given);
    (void)local2remote_UTF8(answer, sizeof answer, given);
    (void)getNextKey(given);
    remove_last_crlf(given);
    remove_character(given, static_cast<int>(length) + 1, 'a');
    remove_space(given);
}

void run_command_line() {
    constexpr int (*kEntries[])(int, char**) = {
        DiskSignature,
        DiskReadErrorCnt,
        LibQuorvelBin_MdHelper,
        LibQuorvelBin_NetHelper,
        LibQuorvelBin_EthInfo,
        LibQuorvelBin_Nameif,
        LibQuorvelBin_iSCSIHelper,
        LibQuorvelBin_FirewallEntry,
        LibQuorvelBin_ConfigHelper,
        LibQuorvelBin_BackupHelperEntry,
        LibQuorvelBin_IsDNSReachable,
    };
    char* arguments[32] = {};
    int count = 0;
    for (char* word = given + 1; word < given + given_size && count < 31; word += strlen(word) + 1) {
        arguments[count++] = word;
    }
    (void)kEntries[static_cast<unsigned char>(given[0]) % (sizeof kEntries / sizeof *kEntries)](count, arguments);
}

}  // namespace

// clang-format off
const FuzzTarget kTargets[] = {
    {"fields",         nullptr, cut_fields      },
    {"numbers",        nullptr, read_numbers    },
    {"device_names",   nullptr, map_names       },
    {"registry_keys",  nullptr, read_registry   },
    {"command_lines",  nullptr, run_command_line},
    {"texts",          nullptr, edit_texts      },
    {nullptr, nullptr, nullptr},
};
// clang-format on

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > kLongest) return 0;
    memcpy(given, data, size);
    given[size] = '\0';
    given_size = size;
    chosen_target().run();
    forget_inventory();
    return 0;
}
