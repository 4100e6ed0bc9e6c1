#include <sys/stat.h>
#include <unistd.h>

#include "foundation/shell.h"
#include "quorvel/foundation.h"
#include "quorvel/services.h"
#include "services/backup_generations.h"
#include "support/scenario.h"

namespace {

Answer backup(Words words) {
    words.insert(words.begin(), "backup");
    return call(LibQuorvelBin_BackupHelperEntry, words);
}

using BackupTest = ApplianceTest;

TEST_F(BackupTest, ShowsTheSettingsOfATask) {
    for (const auto& [settings, shown] : table<2>("services/expected/task-settings")) {
        write_file("/etc/tevra/backup7", settings);
        EXPECT_TRUE(backup({"Info", "007"}).text.find(shown) != std::string::npos) << settings;
    }
    for (const std::string setting :
         {"status=ready", "status=err", "status=run", "status=done", "type=day", "type=now", "week=Sun", "week=Mon",
          "week=Tue", "week=Wed", "week=Thu", "week=Fri", "week=Sat", "crypt=off"}) {
        write_file("/etc/tevra/backup7", setting);
        EXPECT_NE(backup({"Info", "7"}).text.find(setting + "\n"), std::string::npos) << setting;
    }
}

TEST_F(BackupTest, TellsSourceAndDestinationOfPairs) {
    char own[256] = "";
    gethostname(own, sizeof own - 1);
    Capture told(2);
    play("services/expected/backup-answers", backup,
         {
             {"{me}",                 own},
             {       "{usage}", backup({"help"}).text   },
             { "{990}",                  std::string(990,                     'x')}
    });
    std::string left_out;
    for (int i = 0; i < 6; i++)
        left_out +=
            "backup: a folder entry or name with a control byte, a \"..\" or a word that begins with \"-\" is left "
            "out\n";
    EXPECT_EQ(told.text(), left_out + "backup: task 1 has a line above 1023 characters\n");
    const std::string all = backup({"Destinfo", "1"}).text;
    EXPECT_TRUE(all.starts_with("a/b/ c/d//task-t/20") && all.ends_with("/localhost//\ne/f/ rsync://h/g_i/\n")) << all;
}

// What GetDestination prints goes to rsync; the generation made is told back.
std::string run_rsync(std::string& printed) {
    printed = backup({"GetDestination", "1", "1"}).text;
    std::string script = "set -- " + printed + "mkdir -p $2 && rsync -a $3 $4 $1 $2 && realpath $2 | tr -d '\\n'";
    quorvel::Captured directory = quorvel::capture_command(script.c_str());
    EXPECT_EQ(directory.status, 0) << script;
    return directory.output.get() + std::string("/");
}

ino_t inode(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_ino;
}

TEST_F(BackupTest, LinksUnchangedFilesToTheLastGeneration) {
    if (access("/usr/bin/rsync", X_OK) != 0) GTEST_SKIP() << "no rsync here";
    write_file("/mnt/disk/share/docs/same", "same");
    write_file("/mnt/disk/share/docs/changed", "old");
    // Inside another task's directory of the same name, and looked up from where rsync runs.
    write_file("/etc/tevra/backup1", "folder=disk/share/docs<>array/task-t/bk\nname=t\nhardlink=on\n");
    make_directory("/mnt/array/task-t/bk/task-t/incomplete");
    ASSERT_EQ(chdir("/mnt"), 0);
    std::string printed;
    std::string first = run_rsync(printed);
    EXPECT_EQ(printed.find("--link-dest"), std::string::npos) << printed;
    const std::string earlier = "/mnt/array/task-t/bk/task-t/20130101000000";
    ASSERT_EQ(rename(first.substr(0, earlier.size()).c_str(), earlier.c_str()), 0) << first;
    write_file("/mnt/disk/share/docs/changed", "new!");
    std::string second = run_rsync(printed);
    EXPECT_TRUE(printed.ends_with(" --link-dest ../../../20130101000000/localhost/docs/\n")) << printed;
    EXPECT_EQ(inode(earlier + "/localhost/docs/same"), inode(second + "same"));
    EXPECT_EQ(read_file(earlier + "/localhost/docs/changed") + read_file(second + "changed"), "oldnew!");
    ASSERT_EQ(chdir("/"), 0);
}

TEST_F(BackupTest, FindsTheLastGeneration) {
    for (const char* name : {"9", "20120101000000", "x20990101000000", "20130101000000", "0"})
        make_directory(std::string("/mnt/t/") + name);
    const Marks marks = {
        {"{long}", std::string(1023 - strlen("../../20130101000000/"), 'p')}
    };
    for (const auto& [from, to] : table<2>("services/expected/last-generations")) {
        const std::string destination = filled(from, marks);
        char target[quorvel::kLinkTarget] = "";
        Capture output;
        EXPECT_EQ(LibQuorvelBin_GetLastDestTarget(target, sizeof target, destination.c_str(), 7), to.empty() ? -1 : 0);
        EXPECT_EQ(target, filled(to, marks));
        EXPECT_EQ(output.text().ends_with(" : Warning! buffer is too short!\n"), to.empty());
    }
}

TEST(UrlEncode, EncodesAllButUnreservedCharacters) {
    char dst[100];
    for (const auto& [text, room, encoded] : table<3>("services/expected/url-encodings")) {
        strcpy(dst, "untouched");
        EXPECT_EQ(LibQuorvelBin_URLEncode(dst, text.c_str(), std::stoul(room)), encoded.empty() ? -1 : 0) << text;
        EXPECT_EQ(dst, encoded.empty() ? "untouched" : encoded);
    }
    EXPECT_EQ(LibQuorvelBin_URLEncode(dst, nullptr, 9), -1);
    EXPECT_STREQ(dst, "untouched");
}

}  // namespace
