#include "quorvel/foundation.h"
#include "quorvel/registry.h"
#include "services/entry_point.h"

namespace {

Answer config(Words words) {
    words.insert(words.begin(), {"front_end", "config"});
    return call(LibQuorvelBin_ConfigHelper, words);
}

const std::string info = "/etc/tevra/info";
const std::string content = "# comment\n\nHOSTNAME=nas\nB = x=y\r\nlast";

using ConfigTest = ApplianceTest;

TEST_F(ConfigTest, AnswersWithoutChangingTheFile) {
    write_file(info, content);
    const Marks marks = {
        {"{usage}",                           "Quorvel config_helper command\n"},
        {       "{invalid}", " is not a valid registory key.\n"                                 },
        { "{510}",                               std::string(510,                                                                'a')},
    };
    for (const auto& [words, result, text] : table<3>("registry/expected/answers")) {
        EXPECT_EQ(config(words_of(filled(words, marks))), (Answer{std::stoi(result), filled(text, marks)})) << words;
        EXPECT_EQ(read_file(info), content) << words;
    }
    EXPECT_FALSE(exists("/etc/none"));
}

TEST_F(ConfigTest, WritesAndDeletesOneEntryAndKeepsTheRest) {
    write_file(info, content);
    EXPECT_EQ(config({"write", "/etc/tevra/info/NEW", "-h"}),
              (Answer{0, "NEW/etc.info.tevra.etc is not exist in registory. newly add it.\n-h\n"}));
    EXPECT_EQ(read_file(info), content + "\nNEW=-h\n");
    EXPECT_EQ(config({"write", "HOSTNAME.info.tevra.etc", " a=\"b\" "}), (Answer{0, " a=\"b\" \n"}));
    EXPECT_EQ(config({"deletz", "NEW.info.tevra.etc"}), (Answer{0, ""}));
    EXPECT_EQ(read_file(info), "# comment\n\nB = x=y\r\nlast\nHOSTNAME= a=\"b\" \n");
}

TEST_F(ConfigTest, TracesItsStepsInOrder) {
    write_file(info, "A=1\n");
    debug = 10;
    EXPECT_EQ(config({"write", "B.info.tevra.etc", "2"}).text,
              read_file("/source/tests/registry/expected/write-trace.txt"));
    EXPECT_EQ(printed_by([] { EXPECT_EQ(LibQuorvelBin_ConfigOperation(3), -1); }),
              "LibQuorvelBin_ConfigOperation\nLibQuorvelBin_ConfigOperation:default\n");
}

}  // namespace
