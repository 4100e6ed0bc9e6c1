// What every entry answers to an argument that is missing.
#include <libquorvel_bin.h>

#include "support/appliance.h"

namespace {

using MissingArguments = ApplianceTest;

// A result and the errno that came with it.
template <typename Result>
struct Failed {
    Result result;
    int reason = std::exchange(errno, 0);

    // NOLINTNEXTLINE(google-explicit-constructor): a row is the call alone
    Failed(Result of_call) : result(of_call) {}
};

// clang-format off
TEST_F(MissingArguments, GiveTheFailureResult) {
    char text[64] = "";
    mounted_fs_info file_system;
    disk_signature signature;
    os_version version;
    errno = 0;
    const Failed<int> failures[] = {
        test_usersize(nullptr), create_partition(nullptr), create_usb_partition(nullptr, "xfs", "gpt"),
        LibQuorvelBin_GetFsType(nullptr, 9, "/"), GetMountedFsInfo(nullptr, &file_system), GetMountedFsInfo("/", nullptr),
        LibQuorvelBin_GetDisknameFromDevname(nullptr, text, 9), LibQuorvelBin_GetDevnameFromDiskname(nullptr, text, 9),
        LibQuorvelBin_GetDevnameFromDiskname("disk1", nullptr, 9), LibQuorvelBin_GetScsiIDFromDiskname(nullptr, text, 9),
        LibQuorvelBin_GetScsinameFromDisknumber(0, nullptr, 9), get_bus_number_from_udevid(nullptr),
        LibQuorvelBin_LoadDiskSignature(nullptr, &signature), LibQuorvelBin_Tomorrow(nullptr, 11), LibQuorvelBin_DayAfter(nullptr, text, 11),
        ExecPipe("true", nullptr), IsMyDisk(nullptr), LibQuorvelBin_SetConfValInString(nullptr, "1"), LibQuorvelBin_SetConfValInString("F", nullptr),
        set_StringbyKey(nullptr, "A", "1"), set_StringbyKey("/etc/a", "A", nullptr), LibQuorvelBin_GetSpecifiedKey(nullptr, 9, "a", ",", 1),
        LibQuorvelBin_GetSpecifiedKey(text, 9, nullptr, ",", 1), LibQuorvelBin_GetLastWord(nullptr, "a", ",", 9),
        LibQuorvelBin_AvoidLastWord(nullptr, "a", ","), LibQuorvelBin_IsContainedInStringList(nullptr, "a", ","),
        LibQuorvelBin_Basename(text, nullptr, 9), LibQuorvelBin_GetUsernameByUID(0, nullptr, 9), Firminfo_GetFirmInfo(nullptr),
        LibQuorvelBin_GetOsVer(nullptr), LibQuorvelBin_GetOsVerFromString(&version, nullptr), LibQuorvelBin_URLEncode(nullptr, "a", 9),
    };
    for (const auto& call : failures)
        EXPECT_EQ(std::pair(call.result, call.reason), std::pair(-1, EINVAL)) << &call - failures;
    const int others[] = {
        diskcntl(), getmac(), LibQuorvelBin_GetIpInfo("lo", nullptr),
        LibQuorvelBin_GetNetmask("lo", nullptr), LibQuorvelBin_IpAtoU(nullptr), Netdev_GetHwAddr("lo", nullptr), Netdev_SetIpAddr(nullptr, 1, 1),
        LibQuorvelBin_FillInfo(nullptr, "lo"), LibQuorvelBin_SetEncryptionMacAddressNicFile("lo", nullptr),
        LibQuorvelBin_RecoveryEncryptionMacAddressNicFile("lo", nullptr), LibQuorvelBin_GetDNS(1, nullptr, nullptr),
    };
    for (const int& result : others)
        EXPECT_EQ(result, -1) << "other " << &result - others;
    errno = 0;
    const Failed<int64_t> noes[] = {
        IsMounted(nullptr), LibQuorvelBin_MountTest(nullptr), LibQuorvelBin_GetAvailableDiskInfo(nullptr), LibQuorvelBin_IsLvmVolume(nullptr),
        IsLVMDisk(nullptr), LibQuorvelBin_IsAllNumericStr(nullptr, 2), IsFileExist(nullptr),
        IsDirExist(nullptr), LibQuorvelBin_IsOsNewerThan(nullptr), LibQuorvelBin_IsOsNewerEqual(nullptr), LibQuorvelbin_HasSomeExtentionChip(nullptr), LibQuorvelBin_IsContainedInStringList("a", nullptr, ","),
        LibQuorvelBin_IsContainedInStringList("a", "a", nullptr),
    };
    for (const auto& call : noes)
        EXPECT_EQ(std::pair(call.result, call.reason), std::pair(int64_t{0}, EINVAL)) << "question " << &call - noes;
    EXPECT_EQ(getifinfo(nullptr) + LibQuorvelBin_IsNetIfEnabled(nullptr) + LibQuorvelBin_IsNetIfDhcp(nullptr), 0);
    errno = 0;
    const Failed<const char*> nothing[] = {
        get_StringbyKey(nullptr, "A", text, 9), grep_file(nullptr, "a", text, 9), grep_file("/etc/a", "a", nullptr, 9),
        LibQuorvelBin_GetSpoolDir(nullptr, 9), LibQuorvelBin_GetPlatformStr(nullptr, 9),
        LibQuorvelBin_GetSeriesName(nullptr, 9), remote2local_UTF8(nullptr, 9, "a"), remote2local_UTF8(text, 9, nullptr),
        local2remote_UTF8(nullptr, 9, "a"), local2remote_UTF8(text, 9, nullptr), getNextKey(nullptr),
    };
    for (const auto& call : nothing)
        EXPECT_TRUE(call.result == nullptr && call.reason == EINVAL) << "search " << &call - nothing << ": " << call.reason;
    EXPECT_EQ(LibQuorvelBin_HexToUl(nullptr, 2), -7);
    remove_space(nullptr);
    remove_last_crlf(nullptr);
    remove_character(nullptr, 9, 'a');
    LibQuorvelBin_PrintOsVer(nullptr);
    EXPECT_EQ(std::string(text), "");
}
// clang-format on

}  // namespace
