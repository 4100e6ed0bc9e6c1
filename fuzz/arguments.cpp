// The texts that callers hand over: arguments, names, keys, and whole command lines.
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <unistd.h>

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

// What a caller may hand down beside the arguments: texts in the environment, limits, closed descriptors.
constexpr const char* kVariables[] = {"PATH", "TZ", "LANG", "HOME", "IFS", "POSIXLY_CORRECT", "TMPDIR", "LC_ALL"};
constexpr const char* kTexts[] = {nullptr,
                                  "",
                                  "/",
                                  ":::",
                                  "../../etc/passwd",
                                  ":/etc/nas_feature",
                                  "%n%s$(x)`x`;|",
                                  "\xff\xfe\x80",
                                  "A-99999999999999999999B,M13.9.9",
                                  "a0=/\n\t"};
// The sanitizers need descriptors and stack of their own.
constexpr struct {
    int resource;
    rlim_t values[3];
} kLimits[] = {
    {RLIMIT_NOFILE, {3, 4, 6}                      },
    {RLIMIT_FSIZE,  {0, 1, 100}                    },
    {RLIMIT_STACK,  {256 << 10, 512 << 10, 1 << 20}},
};

// Takes place for the length of a command line; byte 0 chooses variable and text, byte 1 limits and descriptors.
struct HostileCaller {
    struct rlimit limits[3];
    int kept[3] = {-1, -1, -1};
    const char* variable;
    char* text;

    explicit HostileCaller(const unsigned char* choice) {
        variable = kVariables[choice[0] % (sizeof kVariables / sizeof *kVariables)];
        const char* before = getenv(variable);
        text = before != nullptr ? strdup(before) : nullptr;
        set_variable(kTexts[choice[0] / 8 % (sizeof kTexts / sizeof *kTexts)]);
        for (int i = 0; i < 3; i++) {
            if ((choice[1] & 1 << i) == 0) continue;
            kept[i] = fcntl(i, F_DUPFD_CLOEXEC, 100);
            (void)close(i);
        }
        for (int i = 0; i < 3; i++) {
            if (getrlimit(kLimits[i].resource, &limits[i]) != 0) abort();
            if ((choice[1] & 8 << i) == 0) continue;
            struct rlimit lower = {kLimits[i].values[choice[1] / 64 % 3], limits[i].rlim_max};
            if (setrlimit(kLimits[i].resource, &lower) != 0) abort();
        }
    }
    ~HostileCaller() {
        for (int i = 0; i < 3; i++)
            if (setrlimit(kLimits[i].resource, &limits[i]) != 0) abort();
        for (int i = 0; i < 3; i++) {
            if (kept[i] < 0) continue;
            if (dup2(kept[i], i) != i) abort();
            (void)close(kept[i]);
        }
        set_variable(text);
        free(text);
        clearerr(stdout);
    }
    void set_variable(const char* value) const {
        if (value != nullptr ? setenv(variable, value, 1) != 0 : unsetenv(variable) != 0) abort();
    }
    HostileCaller(const HostileCaller&) = delete;
    HostileCaller& operator=(const HostileCaller&) = delete;
};

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
    if (given_size < 3) return;
    for (char* word = given + 3; word < given + given_size && count < 31; word += strlen(word) + 1) {
        arguments[count++] = word;
    }
    const auto* choice = reinterpret_cast<const unsigned char*>(given);
    const HostileCaller caller(choice);
    (void)signal(SIGXFSZ, SIG_IGN);
    (void)kEntries[choice[2] % (sizeof kEntries / sizeof *kEntries)](count, arguments);
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
