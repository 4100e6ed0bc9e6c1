#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <sstream>

#include "quorvel/disk.h"
#include "support/scenario.h"

namespace {

// The bytes of a hex dump; an asterisk stands for 256 bytes of ff.
std::string from_hex(const std::string& dump) {
    std::istringstream words(dump);
    std::string bytes;
    for (std::string word; words >> word;)
        bytes +=
            word == "*" ? std::string(256, '\xff') : std::string(1, static_cast<char>(std::stoi(word, nullptr, 16)));
    return bytes;
}

// What the entry point, run with these words behind the command word, prints, and its result as a last line. The
// variable must not make a word end the options.
std::string run(EntryPoint entry, const std::string& words) {
    setenv("POSIXLY_CORRECT", "1", 1);
    const Answer answer = call(entry, words_of("libquorvel_bin command " + words));
    return answer.text + "= " + std::to_string(answer.result);
}

// The help, for the place a row keeps for it.
Marks usage_of(EntryPoint entry) {
    return {
        {"(usage)", call(entry, {}).text}
    };
}

// clang-format off
const std::string head = "01 00 00 00 00 00 00 00 20 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 ";
const std::string mac = "30 32 3a 30 61 3a 62 62 3a 30 63 3a 64 64 3a 65 65 00 00 00 ";  // 02:0a:bb:0c:dd:ee
const std::string disk1 = "64 69 73 6b 31 00 00 00 ", array1 = "61 72 72 61 79 31 00 00 ";
const std::string encrypted = "65 6e 63 72 79 70 74 65 64 00 00 00 00 00 00 00 ";
const std::string record = from_hex(head + disk1 + mac + array1 + encrypted);
const std::string shown = "version         1.00\nhdr_len         32\nraw_device_name disk1\nmac_address     02:0a:bb:0c:dd:ee\n"
                          "in_device       array1\ncryptinfo       encrypted\n";
struct Signature : ApplianceTest {
    void SetUp() override {
        ApplianceTest::SetUp();
        // Kernels have the one kind of interface or the other.
        int made = system("test \"$APPLIANCE_NETWORK\" = yes && { ip link show eth0 || ip link add eth0 type dummy ||"
                          " ip link add eth0 type bridge; } >/dev/null 2>&1 && ip link set eth0 address 02:0a:bb:0c:dd:ee");
        if (made != 0) GTEST_SKIP() << "no network of its own, or no eth0 to be had";
        write_file("/dev/short", record.substr(0, 83));
    }
};

TEST_F(Signature, CommandWritesItByteForByteAndShowsIt) {
    const Marks marks = usage_of(DiskSignature);
    for (const auto& [words, bytes, printed] : table<3>("disk/expected/signature-commands")) {
        write_file("/dev/disk1", from_hex("* *"));
        EXPECT_EQ(filled(printed, marks), run(DiskSignature, words)) << words;
        const auto written = from_hex(bytes);
        EXPECT_EQ(read_file("/dev/disk1"), written + from_hex("* *").substr(written.size())) << words;
    }
    EXPECT_FALSE(exists("-r"));
}

TEST_F(Signature, LoaderReadsLittleEndianNumbersAndWholeRecordsOnly) {
    disk_signature loaded = {};
    write_file("/dev/disk1", from_hex("02 01 00 00 07 00 00 00 04 03 02 01") + record.substr(12, 20) + "AB\x1b\x7f\xc2\x9b\xc2\xa0" + record.substr(40));
    ASSERT_EQ(0, LibQuorvelBin_LoadDiskSignature("/dev/disk1", &loaded));
    EXPECT_TRUE(loaded.sig_ver.major == 0x102 && loaded.sig_ver.minor == 7 && loaded.hdr_len == 0x1020304);
    EXPECT_TRUE(run(DiskSignature, "any /dev/disk1").starts_with("version         258.07\nhdr_len         16909060\nraw_device_name AB????\xc2\xa0\n"));
    ASSERT_EQ(0, mkfifo("/dev/pipe", 0600));
    const int pipe = open("/dev/pipe", O_RDWR);
    ASSERT_EQ(84, write(pipe, record.data(), record.size()));
    EXPECT_EQ(0, LibQuorvelBin_LoadDiskSignature("/dev/pipe", &loaded));
    EXPECT_EQ(1u, loaded.sig_ver.major);
    close(pipe);
    for (const char* path : {"/dev/short", "/dev/none"})
        EXPECT_EQ(-1, LibQuorvelBin_LoadDiskSignature(path, &loaded));
    EXPECT_STREQ("02:0a:bb:0c:dd:ee", loaded.mac_address);
}

TEST_F(Signature, TellsWhetherADiskIsThisUnits) {
    write_file("/dev/own", record);
    write_file("/dev/other", from_hex(head + disk1 + mac.substr(0, 48) + "66 00 00 00 " + array1 + encrypted));
    EXPECT_EQ(printed_by([] { EXPECT_EQ(1, IsMyDisk("own")); }), shown);
    EXPECT_TRUE(IsMyDisk("//dev/own") == 1 && IsMyDisk("other") == 0 && IsMyDisk("none") == 0);
    ASSERT_EQ(0, system("ip link set eth0 name eth7"));
    EXPECT_EQ(printed_by([] { EXPECT_EQ(-1, IsMyDisk("own")); }), shown);
    EXPECT_EQ("= -1", run(DiskSignature, "set /dev/own -r disk2"));
    EXPECT_EQ(read_file("/dev/own"), record);
    ASSERT_EQ(0, system("ip link set eth7 name eth0"));
}

struct ReadErrorCounter : ApplianceTest {};

TEST_F(ReadErrorCounter, IsFourBytesBehindTheRecord) {
    const std::string before(86, '\xff');
    const Marks marks = usage_of(DiskReadErrorCnt);
    write_file("/dev/disk1", from_hex("*"));
    write_file("/dev/short", before);
    EXPECT_TRUE(marks[0].second.starts_with("libquorvel_bin disk_readerrorcnt [ope]"));
    for (const auto& [words, counter, printed] : table<3>("disk/expected/counter-commands")) {
        EXPECT_EQ(filled(printed, marks), run(DiskReadErrorCnt, words)) << words;
        EXPECT_EQ(read_file("/dev/disk1"), before + from_hex(counter) + std::string(166, '\xff')) << words;
    }
}
// clang-format on

}  // namespace
