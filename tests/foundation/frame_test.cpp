// The frame: debug level, dumps, command output, file tests.
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>
#include <tuple>

#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

class Frame : public ApplianceTest {};

// What a program finds that sets neither.
const int at_start[] = {debug, from_cmdline};

TEST_F(Frame, DebugLevelComesFromItsFile) {
    write_file("/etc/libquorvel_bin.conf", "debug=4294967306\n");
    EXPECT_EQ(printed_by([] { EXPECT_EQ(LibQuorvelBin_DebugLevelInit(), 9); }), "debug=10\n");
    write_file("/etc/libquorvel_bin.conf", "debug=no\n");
    EXPECT_EQ(printed_by([] { EXPECT_EQ(LibQuorvelBin_DebugLevelInit(), 8); }), "debug=0\n");
    EXPECT_EQ(at_start[0] + at_start[1], 0);
    debug = 7;
    write_file("/etc/libquorvel_bin.conf", "other=1\n");
    EXPECT_EQ(printed_by([] { EXPECT_EQ(LibQuorvelBin_DebugLevelInit(), 0); }), "");
    EXPECT_EQ(debug, 7);
}

TEST_F(Frame, DumpShowsRowsOfEightBytes) {
    const unsigned char data[16] = {0, 1, 0x7f, 0x80, 0xff, 'a', 'b', 'c', 0xde, 0xad};
    const std::tuple<const char*, int, const char*> rows[] = {
        {"t",     10, "--<t>-- len=10\n000: 00 01 7F 80 FF 61 62 63 \n008: DE AD \n"                    },
        {"t",     16, "--<t>-- len=16\n000: 00 01 7F 80 FF 61 62 63 \n008: DE AD 00 00 00 00 00 00 \n\n"},
        {nullptr, 0,  "--<>-- len=0\n\n"                                                                },
    };
    for (const auto& [title, length, text] : rows) {
        char address[32];
        snprintf(address, sizeof address, "%p: ", static_cast<const void*>(data));
        Capture output;
        EXPECT_EQ(dump(title, data, length), '\n');
        EXPECT_EQ(output.text(), std::string(address) + text);
    }
}

TEST_F(Frame, ExecPipeCollectsAllOutput) {
    const auto output_of = [](const char* command, int status) {
        char* output = nullptr;
        EXPECT_EQ(ExecPipe(command, &output), status) << command;
        const std::string text(output);
        free(output);
        return text;
    };
    for (size_t size : {0U, 2047U, 2048U, 2049U, 4096U, 4097U, 100000U}) {
        const std::string command = "head -c " + std::to_string(size) + " /dev/zero | tr '\\0' x";
        EXPECT_TRUE(output_of(command.c_str(), 0) == std::string(size, 'x')) << size;
    }
    EXPECT_EQ(output_of("echo a; exit 3", W_EXITCODE(3, 0)), "a\n");
    EXPECT_EQ(output_of("kill -9 $$", W_EXITCODE(0, 9)), "");
    EXPECT_EQ(output_of(nullptr, -1), "");
}

TEST_F(Frame, FileTests) {
    write_file("/tmp/file", "");
    make_directory("/tmp/directory");
    make_link("/tmp/link", "file");
    mkfifo("/tmp/fifo", 0600);
    const auto tests = [](const char* path) { return std::pair(IsFileExist(path), IsDirExist(path)); };
    EXPECT_EQ(tests("/tmp/link"), std::pair(1, 0));
    EXPECT_EQ(tests("/tmp/directory"), std::pair(0, 1));
    EXPECT_EQ(tests("/tmp/fifo"), std::pair(0, 0));
    EXPECT_EQ(tests("/tmp/none"), std::pair(0, 0));
    EXPECT_EQ(tests(nullptr), std::pair(0, 0));
}

}  // namespace
