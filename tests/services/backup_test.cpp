#include <sys/stat.h>
#include <unistd.h>

#include "foundation/shell.h"
#include "quorvel/foundation.h"
#include "quorvel/services.h"
#include "services/backup_generations.h"
#include "services/entry_point.h"

namespace {

Answer backup(Words words) {
    words.insert(words.begin(), "backup");
    return call(LibQuorvelBin_BackupHelperEntry, words);
}

using BackupTest = ApplianceTest;

TEST_F(BackupTest, ShowsTheSettingsOfATask) {
    EXPECT_EQ(backup({"Info", "7"}).text,
              "status=Unknown\ntype=Unknown\nstart_time=-1:-1\nweek=Unknown\noverwrite=Unknown\ncrypt=Unknown\n"
              "compress=Unknown\nfolder=\ntrashbox=Unknown\nmirror=Unknown\nlogfile=Unknown\nforce=Unknown\nname=\n"
              "hardlink=Unknown\nkeep_generation=-1\n");
    for (const auto& [settings, shown] : table<2>("services/expected/task-settings")) {
        write_file("/etc/tevra/backup7", settings);
        EXPECT_TRUE(backup({"Info", "007"}).text.find(shown) != std::string::npos) << settings;
    }
}

TEST_F(BackupTest, TellsSourceAndDestinationOfPairs) {
    char own[256] = "";
    gethostname(own, sizeof own - 1);
    for (const auto& [folder, pair] : table<2>("services/expected/task-pairs")) {
        const std::string shown = filled(pair, {
                                                   {"{me}", own}
        });
        write_file("/etc/tevra/backup1", "folder=" +
                                             filled(folder,
                                                    {
                                                        {"{me}", own}
        }) +
                                             "\nhardlink=off\n");
        EXPECT_EQ(backup({"GetDestination", "1", "1"}), (Answer{0, shown}));
        EXPECT_EQ(backup({"Destinfo", "1"}), (Answer{0, shown}));
    }
    write_file("/etc/tevra/backup1", "folder=a/b<>c/d<>e/f<>h@s/g/i<>j\nname=t\nhardlink=on\n");
    EXPECT_EQ(backup({"GetDestination", "1", "2"}), (Answer{0, "e/f/ rsync://h/g_i/\n"}));
    for (const char* missing : {"3", "0", "-1", "2147483647"})
        EXPECT_EQ(backup({"GetDestination", "1", missing}), (Answer{0, ""}));
    std::string all = backup({"Destinfo", "1"}).text;
    EXPECT_TRUE(all.starts_with("a/b/ c/d//task-t/20") && all.ends_with("/localhost//\ne/f/ rsync://h/g_i/\n")) << all;
}

// What GetDestination prints goes to rsync; the generation made is told back.
std::string run_rsync(std::string& printed) {
    printed = backup({"GetDestination", "1", "1"}).text;
    std::string script = "set -- " + printed + "mkdir -p $2 && rsync -a $3 $4 $1 $2 && realpath $2 | tr -d '\\n'";
    int status = -1;
    std::string directory = quorvel::capture_command(script.c_str(), status).get();
    EXPECT_EQ(status, 0) << script;
    return directory + "/";
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
    const std::string long_part(1023 - strlen("../../20130101000000/"), 'p');
    for (const auto& [from, to] : table<2>("services/expected/last-generations")) {
        const std::string destination = filled(from, {
                                                         {"{long}", long_part}
        });
        char target[quorvel::kLinkTarget] = "";
        Capture output;
        EXPECT_EQ(LibQuorvelBin_GetLastDestTarget(target, sizeof target, destination.c_str(), 7), to.empty() ? -1 : 0);
        EXPECT_EQ(target, filled(to, {
                                         {"{long}", long_part}
        }));
        EXPECT_EQ(output.text().ends_with(" : Warning! buffer is too short!\n"), to.empty());
    }
}

TEST_F(BackupTest, ShowsItsUsage) {
    const std::string usage = "Usage of backup helper - Version 0.01.\n\n      GetDestination: Get the location of ";
    for (const auto& [words, result, beginning] : table<3>("services/expected/backup-usage")) {
        Answer answer = backup(words_of(words));
        EXPECT_EQ(answer.result, std::stoi(result)) << words;
        EXPECT_TRUE(answer.text.starts_with(filled(beginning,
                                                   {
                                                       {"{usage}", usage}
        })))
            << answer;
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
