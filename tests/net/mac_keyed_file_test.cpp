// Files bound to a hardware address. With the real cipher tool a sample appliance does it.
#include <sys/stat.h>

#include "foundation/child.h"
#include "net/network.h"
#include "quorvel/net.h"

namespace {

constexpr char kTool[] = "/usr/local/ssl/bin/openssl";
constexpr auto encipher = LibQuorvelBin_SetEncryptionMacAddressNicFile;
constexpr auto decipher = LibQuorvelBin_RecoveryEncryptionMacAddressNicFile;

// What the last call left in the memory of its locals. Nothing else may be called in between.
__attribute__((noinline, no_sanitize("address", "undefined"))) std::string_view left_on_stack() {
    static char copy[32768];
    const volatile char* stack = static_cast<const char*>(__builtin_frame_address(0)) - sizeof copy;
    for (char& c : copy)
        c = *stack++;
    return {copy, sizeof copy};
}

}  // namespace

// clang-format off
TEST_F(NetTest, KeyedCommands) {
    const std::string phrase = " -pass pass:02:0B:7E:10:00:AB", in = "enc -d -aes-256-cbc -in ";
    const std::string longest = "/tmp/" + std::string(33, 'a'), longest_read = "/tmp/" + std::string(170, 'a');
    stand_in(kTool, "case $5 in /tmp/fails) exit 1;; /tmp/odd) exit 2;; *) [ -d = $2 ] || : >$7;; esac");
    // No command: the tool must not run.
    const struct { int (*run)(const char*, const char*); const char* ifname; std::string path; int result; std::string command; } rows[] = {
        {encipher, "eth0", longest,            0, "enc -e -aes-256-cbc -in " + longest + " -out " + longest + ".1" + phrase},
        {encipher, "eth0", longest + "a",      1, ""},
        {encipher, "eth7", "/tmp/f",          -1, ""},
        {decipher, "eth0", "/tmp/fails",       1, in + "/tmp/fails" + phrase},
        {decipher, "eth0", "/tmp/odd",         0, in + "/tmp/odd" + phrase},
        {decipher, "eth0", longest_read,       0, in + longest_read + phrase},
        {decipher, "eth0", longest_read + "a", 1, ""},
        {decipher, "eth7", "/tmp/f",          -1, ""},
    };
    // clang-format on
    std::optional<quorvel::HeldSignals> held;
    for (size_t i = 0; i < 2 * std::size(rows); i++) {
        if (i == std::size(rows)) held.emplace();  // commands are run in other words then
        const auto& row = rows[i % std::size(rows)];
        remove_tree("/run/stand-in/openssl");
        int result = row.run(row.ifname, row.path.c_str());
        bool phrase_left = left_on_stack().find(":7E:10:00:A") != std::string_view::npos;
        EXPECT_TRUE(result == row.result && !phrase_left) << row.path << " " << result;
        EXPECT_EQ(read_file("/run/stand-in/openssl"), row.command + (row.command.empty() ? "" : "\n")) << row.path;
    }
    EXPECT_TRUE(exists(longest) && !exists(longest + ".1")) << "moved over the file";
}

TEST_F(NetTest, EncipheredFileStaysPrivate) {
    const mode_t mask = umask(0);
    write_file("/tmp/plain", "plain");
    write_file("/tmp/victim", "victim");
    chmod("/tmp/plain", 0640);
    for (const char* status : {"1", "0"}) {
        make_link("/tmp/plain.1", "/tmp/victim");
        stand_in(kTool, std::string("kill -TERM $PPID; stat -c %a $7 >/tmp/mode; echo secret >$7; exit ") + status);
        EXPECT_EQ(std::to_string(encipher("eth0", "/tmp/plain")), status);
        EXPECT_EQ(read_file("/tmp/mode"), "600\n");
        EXPECT_EQ(read_file("/tmp/plain"), *status == '0' ? "secret\n" : "plain");
        struct stat left;
        EXPECT_TRUE(stat("/tmp/plain", &left) == 0 && left.st_mode == (S_IFREG | 0640));
        EXPECT_FALSE(exists("/tmp/plain.1"));
    }
    EXPECT_EQ(read_file("/tmp/victim"), "victim");
    umask(mask);
}
