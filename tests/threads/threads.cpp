// The public functions that share nothing, called from four threads at once, each answer compared with the one that a
// single thread got before. Built with ThreadSanitizer and run on the sample appliance borel-4bay.
#include <fcntl.h>
#include <pthread.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <initializer_list>

#include "libquorvel_bin.h"

namespace {

constexpr int kThreads = 4, kRounds = 20, kCommandRounds = 2;
thread_local int self = kThreads;  // of the calling thread, for the rows that write

// What a row is told: room for an answer, and how to put one together.
struct Answer {
    char text[512], buffer[256];

    void add(const char* format, ...) __attribute__((format(printf, 2, 3))) {
        va_list values;
        va_start(values, format);
        (void)vsnprintf(text + strlen(text), sizeof text - strlen(text), format, values);
        va_end(values);
    }
    char* room() { return static_cast<char*>(memset(buffer, 0, sizeof buffer)); }
    char* room(const char* start) { return strcpy(room(), start); }
};

// A file of its own for every thread.
struct OwnFile {
    char path[32];
    OwnFile() {
        snprintf(path, sizeof path, "/tmp/own%d", self);
        FILE* file = fopen(path, "we");
        fputs("a=1\nb=2\n", file);
        fclose(file);
    }
};

int run(int (*entry)(int, char**), std::initializer_list<const char*> words) {
    char copies[4][64] = {};
    char* arguments[5] = {};
    int count = 0;
    for (const char* word : words)
        arguments[count] = strcpy(copies[count], word), count++;
    return entry(count, arguments);
}

void with_set(const struct disk_path* set, Answer& a) {
    disk_path_dump(set);
    a.add("%d", set == nullptr ? -1 : set->slot);
    disk_path_free(set);
}

int count_disk(const struct disk_entry* disk, void* context) {
    static_cast<Answer*>(context)->add("%s=%s ", disk->device, disk->name);
    return 0;
}

struct Row {
    const char* name;
    int rounds;
    void (*call)(Answer& a);
};

// The answer of CALL as a number; as the text in the room that it fills, with its result; and a call that runs
// commands.
#define NUMBER(call)                                                                    \
    {                                                                                   \
#call, kRounds, [](Answer & a) { a.add("%lld", static_cast<long long>(call)); } \
    }
#define TEXT(call)                                                                                  \
    {                                                                                               \
#call, kRounds, [](Answer& a) { a.room(); bool done = (call); a.add("%d %.255s", done, a.buffer); } \
    }
#define DONE(call)                                                 \
    {                                                              \
#call, kRounds, [](Answer& a) { call; a.add("%.255s", a.buffer); } \
    }
#define COMMAND(call)                                                 \
    {                                                                 \
#call, kCommandRounds, [](Answer& a) { a.room(); a.add("%d", call); } \
    }

// clang-format off
const Row kRows[] = {
    TEXT(get_StringbyKey("/etc/tevra/info", "HOSTNAME", a.buffer, 64)),
    TEXT(grep_file("/etc/tevra/info", "DNS", a.buffer, 64)),
    COMMAND(set_StringbyKeyExtend(OwnFile().path, "a", "2", 1)),
    COMMAND(set_StringbyKey("/etc/tevra/shared", self % 2 ? "odd" : "even", "1")),
    COMMAND(del_StringbyKey(OwnFile().path, "a", nullptr)),
    TEXT(getNextKey(a.room("  key"))[0] == 'k'),
    DONE(remove_space(a.room("two words"))), DONE(remove_last_crlf(a.room("line\r\n"))),
    DONE(remove_character(a.room("a,b"), 4, ',')),
    TEXT(LibQuorvelBin_GetSpecifiedKey(a.buffer, 64, "one two three", " ", 2) == 0),
    TEXT(LibQuorvelBin_GetLastWord(a.buffer, "a/b", "/", 64) == 0),
    TEXT(LibQuorvelBin_AvoidLastWord(a.buffer, "a/b", "/") == 0),
    NUMBER(LibQuorvelBin_IsContainedInStringList("a,b", "b", ",")),
    TEXT(LibQuorvelBin_Basename(a.buffer, "/etc/fstab", 64) == 0),
    NUMBER(LibQuorvelBin_IsAllNumericStr("12", 2)), NUMBER(LibQuorvelBin_HexToUl("ff", 2)),
    NUMBER(dumpf("title", stdout, "12345678", 8)), NUMBER(dump("title", "12345678", 8)),
    {"ExecPipe", kCommandRounds, [](Answer& a) {
        char* output = nullptr;
        a.add("%d", ExecPipe("echo output", &output)); a.add("%s", output); free(output); }},
    NUMBER(IsFileExist("/etc/tevra/info")), NUMBER(IsDirExist("/etc")),
    TEXT(LibQuorvelBin_GetConfValInStringByKey(a.buffer, 64, "SERIES_NAME") == 0),
    NUMBER(LibQuorvelBin_GetConfOnOffValInIntByKey("MAX_DISK_NUM")),
    NUMBER(LibQuorvelBin_GetConfValByKey("MAX_DISK_NUM")),
    NUMBER(LibQuorvelBin_GetMaxUsbdiskNum()), NUMBER(LibQuorvelBin_GetMaxDiskNum()),
    NUMBER(LibQuorvelBin_GetMaxArrayNum()), NUMBER(LibQuorvelBin_IsSupport2StepInspection()),
    NUMBER(LibQuorvelBin_IsSupportSlidePowerSwitch()), NUMBER(LibQuorvelBin_IsSupportPrinterServer()),
    NUMBER(LibQuorvelBin_IsSupportDhcps()), NUMBER(LibQuorvelBin_IsSupportRaid()),
    NUMBER(LibQuorvelBin_IsOstrand()), NUMBER(LibQuorvelBin_IsVeldmark()),
    TEXT(LibQuorvelBin_URLEncode(a.buffer, "a b", 64) == 0),
    TEXT(LibQuorvelBin_GetUsernameByUID(0, a.buffer, 64) == 0),
    TEXT(LibQuorvelBin_Tomorrow(a.buffer, 64) == 0), TEXT(LibQuorvelBin_DayAfter("2028-02-28", a.buffer, 64) == 0),
    NUMBER(LibQuorvelBin_IsBorelPlatform()), NUMBER(LibQuorvelbin_HasSomeExtentionChip("11ab7042")),
    NUMBER(LibQuorvelbin_Has7042ExtentionChip()), NUMBER(LibQuorvelBin_IsNiskPlatform12Bay()),
    NUMBER(LibQuorvelBin_IsPellmarPlatform12Bay()), NUMBER(LibQuorvelBin_IsArmada370()),
    NUMBER(LibQuorvelBin_GetPlatform()), TEXT(LibQuorvelBin_GetPlatformStr(a.buffer, 64)),
    TEXT(LibQuorvelBin_GetSeriesName(a.buffer, 64)),
    {"GetOsVer", kRounds, [](Answer& a) {
        struct os_version v;
        a.add("%d", LibQuorvelBin_GetOsVerFromString(&v, "3.4.69-x") + LibQuorvelBin_GetOsVer(&v));
        LibQuorvelBin_PrintOsVer(&v); a.add("%llu%s", static_cast<unsigned long long>(v.version), v.suffix); }},
    NUMBER(LibQuorvelBin_IsOsNewerThan("2.6.31")), NUMBER(LibQuorvelBin_IsOsNewerEqual("3.4.69")),
    {"Firminfo_GetFirmInfo", kRounds, [](Answer& a) {
        struct firm_info info; a.add("%d%s", Firminfo_GetFirmInfo(&info), info.version); }},
    {"slot tables", kRounds, [](Answer& a) {
        with_set(get_DiskOrderConfig(), a); with_set(get_ExtSlotConfig(), a);
        with_set(LibQuorvelBin_GetPlatformDiskSet(), a); }},
    NUMBER(LibQuorvelBin_DumpDiskPathConfig()),
    TEXT(LibQuorvelBin_GetDisknameFromDevname("/dev/sda", a.buffer, 64) == 0),
    TEXT(LibQuorvelBin_GetDevnameFromDiskname("disk2", a.buffer, 255) == 0),
    TEXT(LibQuorvelBin_GetScsiIDFromDiskname("disk3", a.buffer, 64) == 0),
    NUMBER(get_bus_number_from_udevid("USB-STICK-0")),
    {"LibQuorvelBin_WalkDisks", kRounds, [](Answer& a) { a.add("%d", LibQuorvelBin_WalkDisks(count_disk, &a)); }},
    NUMBER(LibQuorvelBin_IsConnectedDisk(0)), COMMAND(LibQuorvelBin_IsPowerSupplyedDisk(0)),
    TEXT(LibQuorvelBin_GetScsinameFromDisknumber(1, a.buffer, 64) == 0),
    NUMBER(LibQuorvelBin_IsLvmVolume("sda")), NUMBER(IsLVMDisk("array1")),
    TEXT(LibQuorvelBin_GetAvailableDiskInfo(a.buffer)), TEXT(LibQuorvelBin_GetSpoolDir(a.buffer, 64)),
    {"LibQuorvelBin_LoadDiskSignature", kRounds, [](Answer& a) {
        struct disk_signature s = {};
        a.add("%d%.8s", LibQuorvelBin_LoadDiskSignature("/dev/disk1", &s), s.raw_device); }},
    NUMBER(IsMyDisk("disk1")), NUMBER(GetPartitionBlocks("/dev/sda")),
    {"GetMountedFsInfo", kRounds, [](Answer& a) {
        struct mounted_fs_info f = {}; a.add("%d%x", GetMountedFsInfo("/proc", &f), f.f_type); }},
    NUMBER(LibQuorvelBin_GetPartitionSize("/nowhere")), NUMBER(LibQuorvelBin_GetPartitionFreeSize("/nowhere")),
    NUMBER(LibQuorvelBin_GetPartitionUsedSize("/nowhere")), NUMBER(IsMounted("/mnt/array1")), NUMBER(diskcntl()),
    TEXT(LibQuorvelBin_GetFsType(a.buffer, 64, "/mnt/array1") == 0),
    COMMAND(create_usb_partition("sda", "xfs", "gpt")), COMMAND(LibQuorvelBin_GetDiskTemperature(0, "/dev/disk1")),
    NUMBER(LibQuorvelBin_IsTargetUseMarvelLHBA("/dev/disk1")),
    TEXT(strcpy(a.buffer, str_diskinfo_value(1))), TEXT(strcpy(a.buffer, str_md_state(1))),
    TEXT(strcpy(a.buffer, str_md_level(5))),
    TEXT(Netdev_GetHwAddr("eth0", reinterpret_cast<uint8_t*>(a.buffer)) == 0),
    {"Netdev addresses", kRounds, [](Answer& a) {
        for (auto get : {Netdev_GetIpAddr, Netdev_GetDstAddr, Netdev_GetNetmask, Netdev_GetBroadAddr}) {
            uint32_t address = 0; a.add("%d %x,", get("eth0", &address), address); } }},
    NUMBER(Netdev_GetMtu("eth0")), NUMBER(Netdev_GetFlags("eth0")), NUMBER(Netdev_GetIfIndex("eth0")),
    NUMBER(Netdev_GetMetric("eth0")),
    {"Netdev_GetMap", kRounds, [](Answer& a) { struct netdev_map m; a.add("%d", Netdev_GetMap("eth0", &m)); }},
    NUMBER(Netdev_SetIpAddr("eth1", 0x281e140a, 0x00fcffff)), NUMBER(close(OpenSocket())), NUMBER(getmac()),
    NUMBER(getifinfo("eth0")), NUMBER(LibQuorvelBin_IsBondingMode()), NUMBER(LibQuorvelBin_GetNetIfNum()),
    NUMBER(LibQuorvelBin_IsExistNetIf("eth0")), NUMBER(LibQuorvelBin_GetInterfaceIndex("eth1")),
    NUMBER(LibQuorvelBin_IsNetIfEnabled("eth1")), NUMBER(LibQuorvelBin_IsNetIfDhcp("eth1")),
    {"net records", kRounds, [](Answer& a) {
        struct host_info i = {};
        LibQuorvelBin_Init(&i); strcpy(i.ip.sz_ip, "192.0.2.1"); strcpy(i.mask.sz_ip, "255.255.252.0");
        a.add("%d", LibQuorvelBin_IpAtoU(&i.ip) + LibQuorvelBin_IpAtoU(&i.mask));
        a.add("%d", LibQuorvelBin_GetNetip(&i.ip, &i.mask, &i.net_addr));
        a.add("%d", LibQuorvelBin_GetIpInfo("eth0", &i.ip) + LibQuorvelBin_GetNetmask("eth0", &i.mask));
        a.add(" %u", LibQuorvelBin_GetMaskSize(&i.mask)); a.add("%d", LibQuorvelBin_FillInfo(&i, "eth0"));
        LibQuorvelBin_PrintNetInfo(&i, -1); }},
    TEXT(LibQuorvelBin_GetDNS(2, "", a.buffer) == 0),
    NUMBER(run(LibQuorvelBin_Nameif, {"nameif"})), NUMBER(run(LibQuorvelBin_EthInfo, {"ethinfo"})),
    COMMAND(LibQuorvelBin_SetEncryptionMacAddressNicFile("eth0", OwnFile().path)),
    COMMAND(LibQuorvelBin_RecoveryEncryptionMacAddressNicFile("eth0", "/etc/tevra/info")),
    NUMBER(LibQuorvelBin_ConfigHelperShowUsage()), NUMBER(run(LibQuorvelBin_iSCSIHelper, {"iscsi", "session_info"})),
    NUMBER(run(LibQuorvelBin_iSCSIHelper, {"iscsi", "volume_info"})),
    NUMBER(run(LibQuorvelBin_BackupHelperEntry, {"backup", "Info", "1"})),
    NUMBER(run(LibQuorvelBin_BackupHelperEntry, {"backup", "Destinfo", "2"})),
    COMMAND(LibQuorvelBin_NandErase()),
};
// clang-format on
constexpr int kRowCount = sizeof kRows / sizeof *kRows;

Answer alone[kRowCount];
pthread_barrier_t start;
int wrong;

void compare(int row) {
    Answer now = {};
    kRows[row].call(now);
    if (strcmp(now.text, alone[row].text) == 0) return;
    fprintf(stderr, "%s: \"%s\", alone \"%s\"\n", kRows[row].name, now.text, alone[row].text);
    __atomic_add_fetch(&wrong, 1, __ATOMIC_RELAXED);
}

// All threads a row at the same time, and then each another one.
void* work(void* number) {
    self = *static_cast<int*>(number);
    for (int row = 0; row < kRowCount; row++) {
        pthread_barrier_wait(&start);
        for (int round = 0; round < kRows[row].rounds; round++)
            compare(row);
    }
    for (int i = 0; i < kRowCount; i++)
        compare((i + self * kRowCount / kThreads) % kRowCount);
    return nullptr;
}

}  // namespace

// ThreadSanitizer does not see the C library's own locks, such as that around the memory of the time zone.
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libc.so.6\n";
}

int main() {
    pthread_t threads[kThreads];
    int numbers[kThreads] = {0, 1, 2, 3};
    from_cmdline = 1;
    for (int row = 0; row < kRowCount; row++)
        kRows[row].call(alone[row]);
    pthread_barrier_init(&start, nullptr, kThreads);
    for (int i = 0; i < kThreads; i++)
        pthread_create(&threads[i], nullptr, work, &numbers[i]);
    for (pthread_t thread : threads)
        pthread_join(thread, nullptr);
    fprintf(stderr, "%d calls, %d wrong answers\n", kRowCount, wrong);
    return wrong != 0;
}
