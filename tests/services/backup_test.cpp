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
    const std::pair<std::string, std::string> rows[] = {
        {"type=week=day\n",                      "type=week\n"                                   },
        {"start_time=7\n",                       "start_time=7:00\n"                             },
        {"start_time=7:05\nstart_time=7:5x\n",   "start_time=-1:-1\n"                            },
        {"week=Sat\r\n",                         "week=Unknown\n"                                },
        {"mirror=on\nmirror\n",                  "mirror=Unknown\n"                              },
        {" force=on\n",                          "force=Unknown\n"                               },
        {"force=off",                            "force=off\n"                                   },
        {"generation=0012\n",                    "keep_generation=12\n"                          },
        {"generation=\n",                        "keep_generation=-1\n"                          },
        {"folder=a/b<>c\nname=na me.\xc3\xa9\n", "folder=a/b<>c\n"                               },
        {"name=na me.\xc3\xa9\n",                "name=na me.\xc3\xa9\n"                         },
        {"name=\nname=second\n",                 "Warning! specified dest already have a velue\n"},
        {"name=\nname=second\n",                 "\nname=\n"                                     },
    };
    for (const auto& [settings, shown] : rows) {
        write_file("/etc/tevra/backup7", settings);
        EXPECT_TRUE(backup({"Info", "007"}).text.find(shown) != std::string::npos) << settings;
    }
}

TEST_F(BackupTest, TellsSourceAndDestinationOfPairs) {
    char own[256] = "";
    gethostname(own, sizeof own - 1);
    const std::string me = own;
    const std::pair<std::string, std::string> rows[] = {
        {"share1<>share2/backup",                          "share1 share2/backup/\n"                        },
        {"otherhost@share/dir/sub<>/mnt/a/b/c",            "rsync://otherhost/dir_sub/ /mnt/a/b/c/\n"       },
        {"h@share/dir/a b+\xc3\xa9<>h@share/dir",          "rsync://h/dir_a%20b%2B%C3%A9/ rsync://h/dir_/\n"},
        {me + "@share/dir/sub<>" + me + "x@share/dir/sub", "share/dir/sub/ rsync://" + me + "x/dir_sub/\n"  },
        {"h@share<>@share/dir",                            "h@share @share/dir\n"                           },
        {"a/b<><>c/d<>e/f",                                "a/b/ c/d/\n"                                    },
        {"",                                               ""                                               },
    };
    for (const auto& [folder, shown] : rows) {
        write_file("/etc/tevra/backup1", "folder=" + folder + "\nhardlink=off\n");
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
    const std::tuple<std::string, int, std::string> rows[] = {
        {"/mnt/t/20140101000000/localhost/sub/",     0,  "../../../20130101000000/localhost/sub/"},
        {"/mnt/t/20130101000000/localhost/sub/",     0,  "../../../20120101000000/localhost/sub/"},
        {"/mnt/t/20140101000000//",                  0,  "../20130101000000//"                   },
        {"/mnt/t/20140101000000/localhost/../",      0,  "../20130101000000/localhost/../"       },
        {"/mnt/t/20140101000000/localhost/./",       0,  "../../20130101000000/localhost/./"     },
        {"/mnt/t/20140101000000/" + long_part,       0,  "../../20130101000000/" + long_part     },
        {"/mnt/t/20140101000000/" + long_part + "p", -1, ""                                      },
    };
    for (const auto& [destination, result, expected] : rows) {
        char target[quorvel::kLinkTarget] = "";
        Capture output;
        EXPECT_EQ(LibQuorvelBin_GetLastDestTarget(target, sizeof target, destination.c_str(), 7), result);
        EXPECT_EQ(target, expected);
        EXPECT_EQ(output.text().ends_with(" : Warning! buffer is too short!\n"), destination.size() > 1024);
    }
}

TEST_F(BackupTest, ShowsItsUsage) {
    const std::string usage = "Usage of backup helper - Version 0.01.\n\n      GetDestination: Get the location of ";
    const std::tuple<Words, int, std::string> rows[] = {
        {{},                                -1, usage                                      },
        {{"help"},                          0,  usage                                      },
        {{"Info", "1x"},                    0,  "LibQuorvelBin_LoadTaskInfo : -1\n" + usage},
        {{"GetDestination", "1"},           0,  usage                                      },
        {{"GetDestination", "1", "1", "1"}, 0,  usage                                      },
        {{"--version"},                     0,  "0.01\n"                                   },
    };
    for (const auto& [words, result, beginning] : rows) {
        Answer answer = backup(words);
        EXPECT_EQ(answer.result, result);
        EXPECT_TRUE(answer.text.starts_with(beginning)) << answer;
    }
}

TEST(UrlEncode, EncodesAllButUnreservedCharacters) {
    // The text, the room for the result, and the result, null when it does not fit.
    const std::tuple<const char*, size_t, const char*> rows[] = {
        {"azAZ09-._~",           11, "azAZ09-._~"                       },
        {"azAZ09-._~",           10, nullptr                            },
        {"/@[`{:\x7f\xc3\xa9 %", 34, "%2F%40%5B%60%7B%3A%7F%C3%A9%20%25"},
        {"/@[`{:\x7f\xc3\xa9 %", 33, nullptr                            },
        {"",                     0,  nullptr                            },
        {nullptr,                9,  nullptr                            },
    };
    for (const auto& [text, size, encoded] : rows) {
        char dst[100] = "untouched";
        EXPECT_EQ(LibQuorvelBin_URLEncode(dst, text, size), encoded != nullptr ? 0 : -1);
        EXPECT_STREQ(dst, encoded != nullptr ? encoded : "untouched");
    }
}

}  // namespace
