// Reading and rewriting key=value files.
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <tuple>
#include <utility>

#include "quorvel/foundation.h"
#include "support/scenario.h"

namespace {

using namespace std::string_literals;

std::function<void()> before_lock;  // what another process does in that moment

}  // namespace

extern "C" int flock(int descriptor, int operation) noexcept {
    if (before_lock) std::exchange(before_lock, nullptr)();
    return static_cast<int>(syscall(SYS_flock, descriptor, operation));
}

namespace {

constexpr char kFile[] = "/etc/settings";
constexpr char kTemporary[] = "/etc/settings_tmp";

class KeyValue : public ApplianceTest {};

const Marks marks = {
    {"{255}",   std::string(255,   'x')},
    {"{511}",   std::string(511,   'x')},
    {"{253}",   std::string(253,   'v')},
    {"{509}",   std::string(509,   'v')},
    {"{600}",   std::string(600,   'v')},
    {"{19747}", std::string(19747, 'v')},
    {"{20000}", std::string(20000, 'v')},
};

TEST_F(KeyValue, ReadsTheFirstLineThatSetsTheKey) {
    for (const auto& [text, key, value] : table<3>("foundation/expected/settings-read")) {
        write_file(kFile, filled(text, marks));
        char found[1024] = "";
        const char* result = get_StringbyKey(kFile, key.c_str(), found, sizeof found);
        EXPECT_EQ(result == found ? found : "(none)"s + found, filled(value, marks)) << text;
    }
    write_file(kFile, "LONG=abcdef\nSHORT=a\n");
    std::string buffer(6, '-');
    get_StringbyKey(kFile, "LONG", buffer.data(), 4);
    EXPECT_EQ(buffer, "abc---");
    get_StringbyKey(kFile, "SHORT", buffer.data(), 4);
    EXPECT_EQ(buffer, "a\0\0---"s);
    EXPECT_EQ(get_StringbyKey(kFile, "LONG", buffer.data(), 0), nullptr);
}

TEST_F(KeyValue, Rewrites) {
    for (const auto& [before, mode, after] : table<3>("foundation/expected/settings-rewritten")) {
        remove_tree(kFile);
        if (before != "(none)") write_file(kFile, filled(before, marks));
        write_file(kTemporary, "left by a writer that was killed\n" + std::string(20000, 'v'));
        EXPECT_EQ(set_StringbyKeyExtend(kFile, "A", mode == "2" ? nullptr : "9", std::stoi(mode)), 0) << after;
        EXPECT_EQ(read_file(kFile), filled(after, marks));
        EXPECT_FALSE(exists(kTemporary)) << after;
    }
    debug = 10;
    write_file(kFile, "A=%s\nB=1\n");
    EXPECT_EQ(printed_by([] { set_StringbyKey(kFile, "B", "2"); }), "write : A=%s\n");
}

TEST_F(KeyValue, KeepsModeAndOwner) {
    write_file(kFile, "A=1\n");
    (void)!chown(kFile, 1, 1);  // refused where only one user is known
    ASSERT_EQ(chmod(kFile, 06640), 0);
    struct stat before, after;
    ASSERT_EQ(stat(kFile, &before), 0);
    EXPECT_EQ(set_StringbyKey(kFile, "A", "2"), 0);
    ASSERT_EQ(stat(kFile, &after), 0);
    EXPECT_EQ(std::tuple(after.st_mode, after.st_uid, after.st_gid),
              std::tuple(before.st_mode & ~06000U, before.st_uid, before.st_gid));
}

// An account that may write beside the file wants its own program among root's.
TEST_F(KeyValue, ADirectoryPutInTheFilesPlaceReceivesNothing) {
    constexpr char kMoved[] = "/run/elsewhere/settings_tmp";
    write_file(kFile, "#!/bin/sh\n");
    ASSERT_EQ(chmod(kFile, 0755), 0);
    ASSERT_EQ(mkdir("/run/elsewhere", 0755), 0);
    stand_in("/usr/local/sbin/mv", "ln -sfn /run/elsewhere /etc/settings && exec /bin/mv \"$@\"");
    EXPECT_EQ(set_StringbyKey(kFile, "A", "2"), 0);
    struct stat moved;
    ASSERT_EQ(stat(kMoved, &moved), 0);
    EXPECT_EQ(std::tuple(moved.st_size, moved.st_mode & 07777), std::tuple(0, 0600U));
}

TEST_F(KeyValue, LeavesAFileAloneThatItCannotReadOrNotWriteWhole) {
    const int next = dup(0);
    close(next);
    const std::tuple<decltype(RLIMIT_FSIZE), int, const char*> rows[] = {
        {RLIMIT_NOFILE, next + 3, "Too many open files"}, // two for the capture, one for the new file
        {RLIMIT_FSIZE,  16000,    "File too large"     }, // in the middle of copying
        {RLIMIT_FSIZE,  30001,    "File too large"     }, // at the last flush
    };
    signal(SIGXFSZ, SIG_IGN);
    std::string text(30000, '\n');
    for (size_t i = 0; i < text.size(); i += 10)
        text.replace(i, 4, "KEY=");
    write_file(kFile, text);
    for (const auto& [resource, most, error] : rows) {
        Capture output;
        rlimit saved;
        getrlimit(resource, &saved);
        const rlimit lower = {static_cast<rlim_t>(most), saved.rlim_max};
        setrlimit(resource, &lower);
        EXPECT_EQ(set_StringbyKey(kFile, "A", "2"), -1);
        setrlimit(resource, &saved);
        EXPECT_EQ(output.text(), "set_StringbyKeyExtend : "s + error + "\n");
        EXPECT_TRUE(read_file(kFile) == text) << error;
        EXPECT_FALSE(exists(kTemporary)) << error;
    }
    EXPECT_EQ(printed_by([] { EXPECT_EQ(set_StringbyKey("/etc", "A", "1"), -1); }),
              "set_StringbyKeyExtend : Is a directory\n");
    EXPECT_EQ(printed_by([] { EXPECT_EQ(set_StringbyKey("/etc/none/x", "A", "1"), -1); }),
              "set_StringbyKeyExtend:file /etc/none/x_tmp open fail.\n");
    EXPECT_EQ(set_StringbyKey(("/tmp/" + std::string(119, 'p')).c_str(), "A", "1"), -1);  // no room for the command
}

TEST_F(KeyValue, WritersAtTheSameTimeLoseNothingAndAReaderNeverSeesHalfAFile) {
    const auto value_of = [](const std::string& key) {
        char value[8] = "";
        get_StringbyKey(kFile, key.c_str(), value, sizeof value);
        return std::string(value);
    };
    write_file(kFile, "STAYS=yes\n");
    for (const std::string key : {"W0", "W1", "W2"}) {
        if (fork() != 0) continue;
        int lost = 0;
        for (int i = 0; i < 40; i++) {
            set_StringbyKey(kFile, key.c_str(), std::to_string(i).c_str());
            lost += value_of(key) != std::to_string(i);
        }
        _exit(lost);
    }
    for (int running = 3, status = 0; running > 0;) {
        ASSERT_EQ(value_of("STAYS"), "yes");
        if (waitpid(-1, &status, WNOHANG) <= 0) continue;
        EXPECT_EQ(status, 0);
        running--;
    }
}

TEST_F(KeyValue, TakesItsTurnBehindAWriterWhoMovesHisFileIntoPlaceMeanwhile) {
    write_file(kTemporary, "A=1\n");
    before_lock = [] { rename(kTemporary, kFile); };
    EXPECT_EQ(set_StringbyKey(kFile, "B", "2"), 0);
    EXPECT_EQ(read_file(kFile), "A=1\nB=2\n");
}

TEST_F(KeyValue, GrepFindsTheFirstLineWithAText) {
    const std::string long_line = std::string(20000, 'l') + "%s\n";
    write_file(kFile, "one two\nnext two\n" + long_line + "last");
    const auto found = [](const char* needle, size_t size) {
        std::string buffer(size, '-');
        return grep_file(kFile, needle, buffer.data(), size) != nullptr ? buffer.c_str() : "none"s;
    };
    EXPECT_EQ(found("two", 64), "one two\n");
    EXPECT_EQ(found("last", 64), "last");
    EXPECT_EQ(found("%s", 20004), long_line.substr(0, 20002));
    EXPECT_EQ(found("ex", 5), "nex");  // pieces of three characters
    EXPECT_EQ(found("xt", 5), "none");
    char buffer[8];
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(grep_file("/none", "a", buffer, sizeof buffer), nullptr); }),
              "grep_file:file /none open fail.\n");
}

// Whoever may write where a path leads lays a file there that nobody ever comes to the end of.
TEST_F(KeyValue, ReadsNoFileWithoutEnd) {
    write_file(kFile, "A=1\n");
    ASSERT_EQ(truncate(kFile, off_t{1} << 30), 0);
    char text[8192] = "";
    EXPECT_TRUE(get_StringbyKey(kFile, "B", text, sizeof text) == nullptr && errno == EFBIG);
    EXPECT_TRUE(grep_file(kFile, "B", text, sizeof text) == nullptr && errno == EFBIG);
    EXPECT_STREQ(get_StringbyKey(kFile, "A", text, sizeof text), "1");
}

}  // namespace
