#include "quorvel/foundation.h"
#include "quorvel/registry.h"
#include "registry/config_buffers.h"
#include "registry/key_notation.h"
#include "support/scenario.h"

namespace {

using namespace quorvel;
using namespace std::string_literals;

Answer config(Words words) {
    words.insert(words.begin(), {"front_end", "config"});
    return call(LibQuorvelBin_ConfigHelper, words);
}

const std::string info = "/etc/tevra/info";

using ConfigTest = ApplianceTest;

TEST_F(ConfigTest, ReadsWritesAndDeletes) {
    play("registry/expected/answers", config,
         {
             {"{usage}",   "Quorvel config_helper command\n" },
             {"{invalid}", " is not a valid registory key.\n"},
             {"{510}",     std::string(510,                    'a')},
             {"{value}",           " a=\"b\" "                                    }
    });
    EXPECT_FALSE(exists("/etc/none"));
    EXPECT_EQ(config(Words(256, "-h")), (Answer{-1, ""}));
}

TEST_F(ConfigTest, LeavesWhatItNamedAndTheReason) {
    write_file(info, "A=1\n");
    EXPECT_EQ(config({"read", "A.info.tevra.etc"}).result, 0);
    EXPECT_EQ(scKeyPath + "|"s + scKeyName + "|" + scKeyRegVal + "|" + pscSrc, info + "|A|1|A");
    EXPECT_EQ(config({"read", "info.tevra.etc"}).result, 0);
    EXPECT_EQ(scKeyPath + "|"s + scKeyName, info + "|info");
    for (const auto& [path, reason] : {
             std::pair("/etc/none", ENOENT), {"/etc",      EISDIR},
               {"/dev/null", EINVAL}
    }) {
        Capture output;
        strcpy(scKeyPath, path);
        EXPECT_EQ(LibQuorvelBin_ConfigOperation(kConfigWrite), -1);
        EXPECT_EQ(errno, reason) << path;
    }
    for (size_t length : {511u, 512u}) {
        EXPECT_EQ(LibQuorvelBin_SeparateRegKeyAndPath(std::string(length, 'a').c_str()), -1);
        EXPECT_EQ(errno, length == 511 ? EINVAL : ENAMETOOLONG);
    }
}

TEST_F(ConfigTest, TracesItsStepsInOrder) {
    write_file(info, "A=1\n");
    debug = 10;
    EXPECT_EQ(config({"write", "B.info.tevra.etc", "2"}).text,
              read_file("/source/tests/registry/expected/write-trace.txt"));
    for (const std::string step :
         {"delete A.none.etc:LibQuorvelBin_ConfigOperation:CMD_WRITE\n", "delete A.none.etc:scKeyPathTmp=.none.etc\n",
          "read tevra.etc:file read routine\n"}) {
        const size_t blank = step.find(' '), colon = step.find(':');
        const std::string key = step.substr(blank + 1, colon - blank - 1);
        EXPECT_NE(config({step.substr(0, blank), key}).text.find(step.substr(colon + 1)), std::string::npos) << step;
    }
    EXPECT_EQ(printed_by([] { EXPECT_EQ(LibQuorvelBin_ConfigOperation(3), -1); }),
              "LibQuorvelBin_ConfigOperation\nLibQuorvelBin_ConfigOperation:default\n");
}

}  // namespace
