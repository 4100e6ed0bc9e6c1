#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "command.h"
#include "disk_guard.h"
#include "support/scenario.h"

namespace {

int run_word(int argc, char** argv) {
    for (const auto* table : {&kRegistryCommands, &kFoundationCommands, &kNetCommands, &kDiskCommands, &kHwCommands}) {
        for (const Command& command : *table) {
            if (argv[1] == std::string(command.word)) return command.run(argc, argv);
        }
    }
    return -1;
}

// What the word prints, and behind it what it tells on standard error; its input is /run/input.
Answer ask(Words words) {
    words.insert(words.begin(), "front_end");
    if (const int input = open("/run/input", O_RDONLY); input >= 0) {
        dup2(input, STDIN_FILENO);
        close(input);
    }
    Capture errors(2);
    Answer answer = call(run_word, words);
    answer.text += errors.text();
    return answer;
}

using CheckedCommands = ApplianceTest;

TEST_F(CheckedCommands, RefuseAndCompare) {
    make_directory("/run");
    ASSERT_EQ(mkfifo("/run/pipe", 0600), 0);
    play("tools/expected/checked", ask,
         {
             {"{lf}",   "\n"           },
             {"{b}",    " "            },
             {"{none}", ""             },
             {"{249}",  std::string(249, 'a')},
             {"{250}",        std::string(250,                 'a')},
             {"{nothing}",    "; nothing was written\n"  }
    });
}

std::string commands_of(const std::function<void()>& action) {
    remove_tree("/run/commands");
    action();
    return read_file("/run/commands");
}

// What the plan shows is what is run, to the last word.
TEST_F(CheckedCommands, PlanIsWhatIsRun) {
    write_file("/proc/partitions", "major minor  #blocks  name\n\n   8       32  976762584 sdc\n");
    for (const char* tool : {"parted", "dd", "fdisk"})
        stand_in(std::string("/usr/local/sbin/") + tool,
                 "echo \"${0##*/} $*\" >>/run/commands\ncase ${0##*/} in fdisk) cat >>/run/commands;; esac");
    for (const char* words : {"create_partition --force /dev/sdc", "create_usb_partition --force /dev/sdc fat gpt",
                              "create_usb_partition --force /dev/sdc xfs", "create_short_partition --force /dev/sdc"}) {
        Words plan = words_of(words);
        plan.insert(plan.begin() + 1, "--dry-run");
        std::string shown;
        EXPECT_EQ(commands_of([&] { shown = ask(plan).text; }), "") << words;
        const auto run = commands_of([&] { EXPECT_EQ(0, ask(words_of(words)).result) << words; });
        EXPECT_NE(run, "");
        EXPECT_EQ(commands_of([&] { EXPECT_EQ(0, system(shown.c_str())); }), run) << words;
    }
}

// Two callers at once: the steps of the one stand behind those of the other; and one that has no end is not waited for.
TEST_F(CheckedCommands, EraseOneByOne) {
    write_file("/run/disk", "");
    write_file("/proc/partitions", "   8       32  976762584 disk\n");
    for (const char* tool : {"parted", "dd"})
        stand_in(std::string("/usr/local/sbin/") + tool, "echo \"${0##*/} $*\" >>/run/commands\nsleep 0.03");
    const Words words = words_of("create_partition --force /run/disk");
    const auto once = commands_of([&] { EXPECT_EQ(0, ask(words).result); });
    const auto twice = commands_of([&] {
        const pid_t other = fork();
        if (other == 0) _exit(ask(words).result);
        EXPECT_EQ(0, ask(words).result);
        int status = 1;
        waitpid(other, &status, 0);
        EXPECT_EQ(0, status);
    });
    EXPECT_EQ(twice, once + once);

    const int disk = open("/run/disk", O_RDONLY | O_CLOEXEC);
    flock(disk, LOCK_SH);
    EXPECT_EQ(commands_of([&] { EXPECT_EQ(3, ask(words).result); }), "");
    close(disk);
}

// What fdisk made of its keystrokes decides, not its status; and it is not asked for the lock that is held already.
TEST_F(CheckedCommands, PartitionIsThere) {
    write_file("/proc/partitions", "   8       32  976762584 disk\n");
    const struct {
        const char *tool, *words;
        int result;
    } cases[] = {
        {"true",                                                 "--force /run/disk xfs",     1},
        {"[ -z \"$LOCK_BLOCK_DEVICE\" ] || flock -n /run/disk true || exit 1\nprintf '\\203%059d\\125\\252' 0 |"
         " dd of=/run/disk bs=1 seek=450 conv=notrunc", "--force /run/disk xfs",     0},
        {"true",                                                 "--force /run/disk xfs gpt", 0},
    };
    for (const auto& [tool, words, result] : cases) {
        write_file("/run/disk", "");
        stand_in("/usr/local/sbin/parted");
        stand_in("/usr/local/sbin/fdisk", tool);
        setenv("LOCK_BLOCK_DEVICE", "yes", 1);
        EXPECT_EQ(ask(words_of(std::string("create_usb_partition ") + words)).result, result) << tool;
    }
}

// An account has mounted a program that never answers, under a name whose type stands behind 4096 bytes; or has mounted
// it over what a loop device shows.
TEST_F(CheckedCommands, GuardWaitsForNoProgram) {
    constexpr char kPlace[] = "/run/program";
    make_directory(kPlace);
    const int device = open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options = "rootmode=40000,user_id=0,group_id=0,fd=" + std::to_string(device);
    const bool mounted = mount("program", kPlace, "fuse", MS_NOSUID, options.c_str()) == 0;
    std::string name = "/run/program/";
    for (int i = 0; i < 1023; i++)
        name += "\\040";
    const struct {
        const char* path;
        std::string text;
    } cases[] = {
        {"/proc/mounts",                       name + " /run/program fuse rw 0 0\n"},
        {"/sys/block/loop0/loop/backing_file", "/run/program/image\n"              },
    };
    write_file("/sys/block/sdx/dev", "8:368\n");
    for (const auto& [path, text] : cases) {
        write_file(path, text);
        const pid_t child = fork();
        if (child == 0) {
            alarm(10);
            Disk disk;
            Reason reason;
            strcpy(disk.kernel, "sdx");
            strcpy(disk.node, "/dev/sdx");
            _exit(is_in_use(disk, reason) ? 1 : 0);
        }
        int status = 1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << path;
        remove_tree(path);
    }
    umount2(kPlace, MNT_DETACH);
    close(device);
    if (!mounted) GTEST_SKIP() << "mounting is refused";
}

// The link to an NVMe disk's controller has a number as well.
TEST_F(CheckedCommands, ShowPartitionsAlone) {
    write_file("/sys/block/nvme0n1/device/dev", "242:0\n");
    write_file("/sys/block/nvme0n1/nvme0n1p1/dev", "259:1\n");
    Disk disk;
    strcpy(disk.kernel, "nvme0n1");
    Capture shown(1);
    describe_disk(disk);
    EXPECT_EQ(shown.text(), "device=\nname=-\nserial=-\nbytes=0\nholds=nvme0n1p1 0 -\n");
}

// A tool sends the signals while it works: the word goes on to its end.
TEST_F(CheckedCommands, FinishWhatTheyBegan) {
    const struct {
        const char *words, *tool, *last;
    } cases[] = {
        {"config write A.x.etc 2",                "mv",             "/etc/x_tmp /etc/x"},
        {"config apply /run/list",                "mv",             "/etc/y_tmp /etc/y"},
        {"create_usb_partition --force /dev/sdc", "dd",             "/dev/sdc"         },
        {"nand_erase",                            "flash_eraseall", "/dev/mtdchar3"    },
    };
    write_file("/etc/x", "A=1\n");
    write_file("/etc/y", "B=1\n");
    write_file("/run/list", "A.x.etc=3\nB.y.etc=3\n");
    write_file("/proc/partitions", "   8       32  976762584 sdc\n");
    write_file("/proc/mtd", "mtd2: 00040000 00010000 \"nboot\"\nmtd3: 00040000 00010000 \"nroot\"\n");
    for (const char* tool : {"fdisk", "nvram"})
        stand_in(std::string("/usr/local/sbin/") + tool);
    for (const auto& [words, tool, last] : cases) {
        const std::string log = tool == std::string("dd") ? "fdisk" : tool;
        stand_in(std::string("/usr/local/sbin/") + tool,
                 "kill -TERM 0; kill -INT 0; kill -HUP 0; kill -ALRM 0\n"
                 "case ${0##*/} in mv) exec /usr/bin/mv \"$@\";; esac");
        const pid_t child = fork();
        if (child == 0) {
            setsid();
            for (int number : {SIGTERM, SIGINT, SIGHUP, SIGALRM})
                signal(number, SIG_DFL);  // whatever an earlier case left
            _exit(ask(words_of(words)).result);
        }
        int status = 1;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        EXPECT_EQ(status, 0) << words;
        ASSERT_FALSE(calls(log).empty()) << words;
        EXPECT_EQ(calls(log).back(), last);
    }
}

}  // namespace
