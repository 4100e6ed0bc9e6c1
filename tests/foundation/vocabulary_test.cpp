// The internal vocabulary, at the edges of what it promises.
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdint>

#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/open_in_time.h"
#include "foundation/options.h"
#include "foundation/replacement.h"
#include "foundation/second_look.h"
#include "foundation/shell.h"
#include "foundation/trusted.h"
#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

int pauses = -1;  // not counted, but made
int taken_signals = 0;

}  // namespace

// A pause that is counted takes no time.
extern "C" int nanosleep(const struct timespec* length, struct timespec* rest) {
    if (pauses < 0) return clock_nanosleep(CLOCK_MONOTONIC, 0, length, rest);
    pauses++;
    return 0;
}

namespace {

using namespace quorvel;

class Vocabulary : public ApplianceTest {};

void take_every_child(int) {
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}

TEST_F(Vocabulary, LearnsTheEndOfAChildWhateverTheCallerDoesWithIts) {
    const std::pair<const char*, int> rows[] = {
        {"exit 3",                    W_EXITCODE(3,   0)      },
        {"/no/such/tool 2>/dev/null", W_EXITCODE(127, 0)      },
        {"kill -TERM $$; echo alive", W_EXITCODE(0,   SIGTERM)}, // what the caller blocks or ignores is not the child's
        {"kill -PIPE $$; echo alive", W_EXITCODE(0,   SIGPIPE)},
    };
    sigset_t blocked, before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    signal(SIGPIPE, SIG_IGN);
    for (sighandler_t disposition : {SIG_DFL, SIG_IGN, static_cast<sighandler_t>(take_every_child)}) {
        signal(SIGCHLD, disposition);
        for (const auto& [command, status] : rows) {
            EXPECT_EQ(run_command(command), status) << command;
            EXPECT_EQ(capture_command(command).status, status) << command;
        }
        EXPECT_STREQ(capture_command("echo out").output.get(), "out\n");
    }
    signal(SIGCHLD, SIG_DFL);
    signal(SIGPIPE, SIG_DFL);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool tell_parent(const char*, void* answer) {
    *static_cast<pid_t*>(answer) = getppid();
    return true;
}

bool hold_lock(const char* path, void*) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    while (flock(file, LOCK_EX) == 0)
        pause();
    return false;
}

// A caller who waits for any child never meets who looks, and one that gets no answer ends all the same.
TEST_F(Vocabulary, WhoLooksIsNoChildAndEndsByItself) {
    pid_t parent = getpid();
    for (sighandler_t disposition : {SIG_DFL, SIG_IGN, static_cast<sighandler_t>(take_every_child)}) {
        signal(SIGCHLD, disposition);
        EXPECT_TRUE(look_elsewhere({tell_parent, "", &parent, sizeof parent}));
        EXPECT_NE(parent, getpid());
    }
    signal(SIGCHLD, SIG_DFL);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    write_file("/tmp/lock", "");
    const Descriptor lock = open_for_reading("/tmp/lock");
    EXPECT_FALSE(look_elsewhere({hold_lock, "/tmp/lock", nullptr, 0}));
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_NE(flock(lock.number, LOCK_EX | LOCK_NB), 0);
    alarm(10);
    EXPECT_EQ(flock(lock.number, LOCK_EX), 0);
    alarm(0);
}

TEST_F(Vocabulary, HoldsEndingSignalsBackHereAndInChildren) {
    signal(SIGTERM, [](int) { taken_signals++; });
    {
        HeldSignals held;
        raise(SIGTERM);
        EXPECT_STREQ(capture_command("kill -TERM $$; echo alive").output.get(), "alive\n");
        EXPECT_EQ(taken_signals, 0);
    }
    EXPECT_EQ(taken_signals, 1);
    EXPECT_EQ(run_command("kill -TERM $$"), SIGTERM);
    signal(SIGTERM, SIG_DFL);
}

TEST_F(Vocabulary, ACutTextIsNeitherOpenedNorRun) {
    write_file("/tmp/cut", "");
    make_directory("/tmp/cut.d");
    const Text<9> file("/tmp/cutter"), directory("/tmp/cut.d/other");
    ASSERT_STREQ(file.c_str(), "/tmp/cut");
    EXPECT_FALSE(open_for_reading(file));
    EXPECT_EQ(errno, ENAMETOOLONG);
    EXPECT_FALSE(open_for_update(file));
    EXPECT_FALSE(path_exists(file));
    EXPECT_FALSE(open_directory(Text<11>("/tmp/cut.d/other")));
    EXPECT_EQ(run_command(Text<5>("true or not")), -1);
    // What was printed before stands before what the command prints.
    EXPECT_EQ(printed_by([] { EXPECT_EQ(printf("one ") + run_command("echo two"), 4); }), "one two\n");
    EXPECT_EQ(capture_command(Text<5>("true or not")).status, -1);
    char copy[] = "------";
    copy_text(copy, 4, "abcdef");
    EXPECT_EQ(std::string(copy, 6), std::string("abc\0--", 6));
}

TEST_F(Vocabulary, LinesComeAsPiecesOfTheLimit) {
    for (size_t limit : {size_t{1}, size_t{7}, size_t{511}, kLongestPiece}) {
        for (size_t length :
             {limit - 1, limit, limit + 1, 2 * kLongestPiece - 1, 2 * kLongestPiece, 2 * kLongestPiece + 1}) {
            std::string text = std::string(length, 'x') + "\n\nlast", joined;
            write_file("/tmp/lines", text);
            LineFile file(open_for_reading("/tmp/lines"), limit);
            for (char* line : file) {
                const size_t piece = strlen(line);
                const bool whole = piece == limit || line[piece - 1] == '\n' || joined.size() + piece == text.size();
                EXPECT_TRUE(piece >= 1 && piece <= limit && whole) << limit << " " << length;
                joined += line;
                std::fill_n(line, piece + 1, '#');  // a line is its reader's to change
            }
            EXPECT_TRUE(joined == text) << limit << " " << length;
        }
    }
}

TEST_F(Vocabulary, IsNotKeptByAPipeThatBringsAByteNowAndThen) {
    mkfifo("/tmp/fifo", 0600);
    LineFile file(open_for_reading("/tmp/fifo"), 100);
    const pid_t writer = fork();
    if (writer == 0) {
        const int pipe = open("/tmp/fifo", O_WRONLY);
        for (int i = 0; i < 100; i++) {
            (void)!write(pipe, "x", 1);
            usleep(20'000);
        }
        _exit(0);
    }
    usleep(50'000);
    file.reader.patience = 200'000'000;
    const size_t length = next_piece(file.reader).size();
    EXPECT_TRUE(file.reader.failed && length > 1 && length < 50) << length;
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
}

TEST_F(Vocabulary, ReadsNumbersAtTheirLimits) {
    const struct {
        const char* text;
        int64_t number;
        int32_t low;
        int limited;
    } rows[] = {
        {" -12x",                -12,         -12,     -12    },
        {"x",                    0,           0,       0      },
        {"2147483648",           2147483648,  INT_MIN, INT_MAX},
        {"4294967306",           4294967306,  10,      INT_MAX},
        {"-2147483649",          -2147483649, INT_MAX, INT_MIN},
        {"99999999999999999999", INT64_MAX,   -1,      INT_MAX},
    };
    for (const auto& [text, number, low, limited] : rows)
        EXPECT_EQ(std::tuple(leading_number(text), low_int(text), leading_int(text)), std::tuple(number, low, limited))
            << text;
    EXPECT_EQ(number_after("a=1 b=2", "b="), 2);
    EXPECT_EQ(number_after("a=1", "b="), std::nullopt);
}

TEST_F(Vocabulary, AnOptionVectorIsWholeOrNone) {
    std::vector<char*> words(kMaxArguments + 1, const_cast<char*>("-a"));
    EXPECT_FALSE(OptionVector(kMaxArguments + 1, words.data()));
    optind = 5;
    {
        OptionVector vector(kMaxArguments, words.data());
        ASSERT_TRUE(vector);
        EXPECT_EQ(getopt(vector.count, vector.arguments, "a"), 'a');
    }
    EXPECT_EQ(optind, 5);
}

TEST_F(Vocabulary, ListsWhereEveryAccountMayWriteAreReadOnlyWhenTrusted) {
    write_file("/tmp/own", "");
    make_link("/tmp/link", "own");
    mkfifo("/tmp/fifo", 0600);
    EXPECT_TRUE(open_trusted("/tmp/own"));
    EXPECT_FALSE(open_trusted("/tmp/link"));
    EXPECT_FALSE(open_trusted("/tmp/fifo"));
    if (chown("/tmp/own", 1, 1) != 0) return;  // where only one user is known
    EXPECT_FALSE(open_trusted("/tmp/own"));
}

mode_t mode_of(const Descriptor& file) {
    struct stat status = {};
    fstat(file.number, &status);
    return status.st_mode & 07777;
}

// Who reads the file itself may be held up: by what lies below it, or by a lock that a writer keeps.
TEST_F(Vocabulary, OutsideTheSystemsPlacesACopyIsReadWhereAccountsMayMount) {
    const struct {
        const char* path;
        off_t size;
        nlink_t names;  // of what is read
        bool whole;
    } rows[] = {
        {"/etc/read", 9,         1, true },
        {"/tmp/read", 9,         0, true },
        {"/etc/read", 5'000'000, 1, true },
        {"/tmp/read", 5'000'000, 0, false},
    };
    const bool may_mount = exists("/dev/fuse");
    if (!may_mount) write_file("/dev/fuse", "");
    for (const auto& [path, size, names, whole] : rows) {
        write_file(path, "text");
        ASSERT_EQ(truncate(path, size), 0);
        EXPECT_EQ(static_cast<bool>(open_in_time(path)), whole) << path << size;
        const Descriptor file = open_start_in_time(path);
        struct stat status = {};
        char text[8] = "";
        EXPECT_EQ(fstat(file.number, &status), 0);
        EXPECT_EQ(status.st_nlink, names) << path;
        EXPECT_EQ(read_fully(file.number, text, 5), 5);
        EXPECT_STREQ(text, "text");
        EXPECT_EQ(unlink(path), 0);
    }
    if (!may_mount) (void)unlink("/dev/fuse");
}

TEST_F(Vocabulary, AReplacementIsNewAndNobodyElses) {
    constexpr char kPath[] = "/tmp/new";
    const std::string makings[] = {"true", "echo old > new", "ln other new", "ln -s other new", "mkfifo new"};
    const mode_t mask = umask(0);
    for (const std::string& making : makings) {
        remove_tree(kPath);
        write_file("/tmp/other", "kept");
        ASSERT_EQ(run_command(("cd /tmp && " + making).c_str()), 0);
        Descriptor file = open_replacement(kPath);
        ASSERT_TRUE(file) << making;
        EXPECT_EQ(mode_of(file), 0600U) << making;
        EXPECT_TRUE(write_fully(file.number, "new", 3));
        EXPECT_EQ(read_file(kPath) + read_file("/tmp/other"), "newkept") << making;
        give_mode_and_owner(file.number, nullptr);
        EXPECT_EQ(mode_of(file), 0644U) << making;
    }
    umask(mask);
    const Descriptor held(open(kPath, O_RDONLY));
    flock(held.number, LOCK_EX);
    pauses = 0;
    EXPECT_FALSE(open_replacement(kPath));
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_EQ(std::exchange(pauses, -1), 2000);
    EXPECT_EQ(read_file(kPath), "new");
    // Left over whole: whoever may read it may lock it for ever.
    const struct timespec long_ago[] = {
        {1'000'000'000, 0},
        {1'000'000'000, 0}
    };
    futimens(held.number, long_ago);
    EXPECT_TRUE(open_replacement(kPath));
    make_directory("/tmp/directory");
    EXPECT_FALSE(open_replacement("/tmp/directory"));
    if (chown("/tmp/other", 1, 1) != 0) return;  // where only one user is known
    // A writer that has given its file to the other's owner is at work until it is moved.
    const Descriptor given = open_replacement(kPath, "/tmp/other");
    ASSERT_EQ(fchown(given.number, 1, 1), 0);
    pauses = 0;
    EXPECT_FALSE(open_replacement(kPath, "/tmp/other"));
    EXPECT_EQ(std::exchange(pauses, -1), 2000);
    EXPECT_TRUE(open_replacement(kPath));
}

// Where a caller has closed its output, a message must not go into the file.
TEST_F(Vocabulary, FilesAreNeverTheStandardOutput) {
    write_file("/etc/settings", "A=1\nB=2\n");
    if (fork() == 0) {
        for (int standard : {0, 1, 2})
            close(standard);
        debug = 10;
        set_StringbyKey("/etc/settings", "A", "2");
        fflush(stdout);
        _exit(0);
    }
    wait(nullptr);
    EXPECT_EQ(read_file("/etc/settings"), "B=2\nA=2\n");
}

}  // namespace
