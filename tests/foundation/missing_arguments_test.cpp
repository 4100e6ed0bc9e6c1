// What every entry answers to an argument that is missing.
#include <libquorvel_bin.h>

#include "support/appliance.h"

namespace {

using MissingArguments = ApplianceTest;

// clang-format off
TEST_F(MissingArguments, GiveTheFailureResult) {
    char text[64] = "";
    mounted_fs_info file_system;
    disk_signature signature;
    os_version version;
    const int failures[] = {
        test_usersize(nullptr), create_partition(nullptr), create_usb_partition(nullptr, "xfs", "gpt"), diskcntl(), getmac(),
        LibQuorvelBin_GetFsType(nullptr, 9, "/"), GetMountedFsInfo(nullptr, &file_system), GetMountedFsInfo("/", nullptr),
        LibQuorvelBin_GetDisknameFromDevname(nullptr, text, 9), LibQuorvelBin_GetDevnameFromDiskname(nullptr, text, 9),
        LibQuorvelBin_GetDevnameFromDiskname("disk1", nullptr, 9), LibQuorvelBin_GetScsiIDFromDiskname(nullptr, text, 9),
        LibQuorvelBin_GetScsinameFromDisknumber(0, nullptr, 9), get_bus_number_from_udevid(nullptr),
        LibQuorvelBin_LoadDiskSignature(nullptr, &signature), LibQuorvelBin_Tomorrow(nullptr, 11), LibQuorvelBin_DayAfter(nullptr, text, 11),
        ExecPipe("true", nullptr), IsMyDisk(nullptr), LibQuorvelBin_SetConfValInString(nullptr, "1"), LibQuorvelBin_SetConfValInString("F", nullptr),
        set_StringbyKey(nullptr, "A", "1"), set_StringbyKey("/etc/a", "A", nullptr), LibQuorvelBin_GetSpecifiedKey(nullptr, 9, "a", ",", 1),
        LibQuorvelBin_GetSpecifiedKey(text, 9, nullptr, ",", 1), LibQuorvelBin_GetLastWord(nullptr, "a", ",", 9),
        LibQuorvelBin_AvoidLastWord(nullptr, "a", ","), LibQuorvelBin_IsContainedInStringList(nullptr, "a", ","),
        LibQuorvelBin_Basename(text, nullptr, 9), LibQuorvelBin_GetUsernameByUID(0, nullptr, 9), LibQuorvelBin_GetIpInfo("lo", nullptr),
        LibQuorvelBin_GetNetmask("lo", nullptr), LibQuorvelBin_IpAtoU(nullptr), Netdev_GetHwAddr("lo", nullptr), Netdev_SetIpAddr(nullptr, 1, 1),
        LibQuorvelBin_FillInfo(nullptr, "lo"), LibQuorvelBin_SetEncryptionMacAddressNicFile("lo", nullptr),
        LibQuorvelBin_RecoveryEncryptionMacAddressNicFile("lo", nullptr), LibQuorvelBin_GetDNS(1, nullptr, nullptr), Firminfo_GetFirmInfo(nullptr),
        LibQuorvelBin_GetOsVer(nullptr), LibQuorvelBin_GetOsVerFromString(&version, nullptr), LibQuorvelBin_URLEncode(nullptr, "a", 9),
    };
    for (const int& result : failures)
        EXPECT_EQ(result, -1) << &result - failures;
    const int64_t noes[] = {
        IsMounted(nullptr), LibQuorvelBin_MountTest(nullptr), LibQuorvelBin_GetAvailableDiskInfo(nullptr), LibQuorvelBin_IsLvmVolume(nullptr),
        IsLVMDisk(nullptr), LibQuorvelBin_IsAllNumericStr(nullptr, 2), getifinfo(nullptr),
        LibQuorvelBin_IsNetIfEnabled(nullptr), LibQuorvelBin_IsNetIfDhcp(nullptr), LibQuorvelBin_IsOsNewerThan(nullptr),
        LibQuorvelBin_IsOsNewerEqual(nullptr), LibQuorvelbin_HasSomeExtentionChip(nullptr), LibQuorvelBin_IsContainedInStringList("a", nullptr, ","),
        LibQuorvelBin_IsContainedInStringList("a", "a", nullptr),
    };
    for (const int64_t& result : noes)
        EXPECT_EQ(result, 0) << "question " << &result - noes;
    const char* const nothing[] = {
        get_StringbyKey(nullptr, "A", text, 9), grep_file(nullptr, "a", text, 9), grep_file("/etc/a", "a", nullptr, 9),
        grep_file("/etc", "a", text, 2), LibQuorvelBin_GetSpoolDir(nullptr, 9), LibQuorvelBin_GetPlatformStr(nullptr, 9),
        LibQuorvelBin_GetSeriesName(nullptr, 9), remote2local_UTF8(nullptr, 9, "a"), remote2local_UTF8(text, 9, nullptr),
        local2remote_UTF8(nullptr, 9, "a"), local2remote_UTF8(text, 9, nullptr), getNextKey(nullptr),
    };
    for (const char* const& result : nothing)
        EXPECT_EQ(result, nullptr) << "search " << &result - nothing;
    EXPECT_EQ(LibQuorvelBin_HexToUl(nullptr, 2), -7);
    remove_space(nullptr);
    remove_last_crlf(nullptr);
    remove_character(nullptr, 9, 'a');
    LibQuorvelBin_PrintOsVer(nullptr);
    EXPECT_EQ(std::string(text), "");
}
// clang-format on

}  // namespace
