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
const std::string usage = "Quorvel config_helper command\n";
const std::string invalid = " is not a valid registory key.\n";

using ConfigTest = ApplianceTest;

TEST_F(ConfigTest, AnswersWithoutChangingTheFile) {
    write_file(info, content);
    const std::pair<Words, Answer> rows[] = {
        {{"read", "HOSTNAME..info.tevra..etc."},                      {0, "nas\n"}                                                     },
        {{"read", "/etc/tevra/info/HOSTNAME.domain/x"},               {0, "nas\n"}                                                     },
        {{"read", "B.info.tevra.etc"},                                {0, " x=y\n"}                                                    },
        {{"read", "ABSENT.info.tevra.etc"},                           {-1, ""}                                                         },
        {{"read", "info.tevra.etc"},
         {0, "\t.info.tevra.etc\n\t{\n\t\t# comment=\n\t\t=\n\t\tHOSTNAME=nas\n\t\tB = x=y\r\n\t\tlast=\n\t}\n"}                       },
        {{"read", "/etc/tevra/none"},                                 {-1, "/etc/tevra/none is not a file!\n.none.tevra.etc" + invalid}},
        {{"read", "tevra.etc"},                                       {-1, "/etc/tevra is not a file!\n.tevra.etc" + invalid}          },
        {{"read", "X.none.etc"},                                      {-1, "X.none.etc" + invalid}                                     },
        {{"read", "HOSTNAME"},                                        {-1, ""}                                                         },
        {{"read", "HOSTNAME."},                                       {-1, "HOSTNAME" + invalid}                                       },
        {{"read", "a." + std::string(510, 'a')},                      {-1, ""}                                                         },
        {{"write", "A.none.etc", "v"},                                {-1, "A.none.etc" + invalid}                                     },
        {{"write", "HOSTNAME.info.tevra.etc", std::string(512, 'v')}, {-1, ""}                                                         },
        {{"delete", "info.tevra.etc"},                                {-1, "info.tevra.etc" + invalid}                                 },
        {{"delete", "ABSENT.info.tevra.etc"},                         {0, ""}                                                          },
        {{},                                                          {-1, ""}                                                         },
        {{"read", "B.info.tevra.etc", "x"},                           {-1, ""}                                                         },
        {{"write", "B.info.tevra.etc"},                               {-1, ""}                                                         },
        {{"deleteX", "B.info.tevra.etc"},                             {0, usage}                                                       },
        {{"deleet", "B.info.tevra.etc"},                              {0, usage}                                                       },
        {{"-h", "delete", "B.info.tevra.etc"},                        {0, usage}                                                       },
    };
    for (const auto& [words, answer] : rows) {
        EXPECT_EQ(config(words), answer) << testing::PrintToString(words);
        EXPECT_EQ(read_file(info), content) << testing::PrintToString(words);
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
              "argc=3\nargv[0]=write\nstrlen(argv[0])=5\nCMD=WRITE\n"
              "LibQuorvelBin_SeparateRegKeyAndPath: pscSrc=B.info.tevra.etc\npscKey=B\np=info.tevra.etc\n"
              "present_item_list->name=etc\nfilename=/etc\npresent_item_list->name=tevra\nfilename=/etc/tevra\n"
              "present_item_list->name=info\nfilename=/etc/tevra/info\n"
              "LibQuorvelBin_ConfigHelper : scKeyName=B\nLibQuorvelBin_ConfigHelper : scKeyPath=/etc/tevra/info\n"
              "LibQuorvelBin_ConfigHelper : scKeyRegVal=2\nLibQuorvelBin_ConfigOperation\n"
              "LibQuorvelBin_ConfigOperation : CMD_WRITE\n"
              "LibQuorvelBin_ConfigOperation : scKeyPath = /etc/tevra/info\n"
              "LibQuorvelBin_ConfigOperation : scKeyName = B\n"
              "present_item_list->name=info\nfilename=/etc.info\npresent_item_list->name=tevra\n"
              "filename=/etc.info.tevra\npresent_item_list->name=etc\nfilename=/etc.info.tevra.etc\n"
              "B/etc.info.tevra.etc is not exist in registory. newly add it.\nwrite : A=1\n"
              "LibQuorvelBin_ConfigOperation:CMD_READ scKeyPath=/etc/tevra/info\n2\n");
    EXPECT_EQ(printed_by([] { EXPECT_EQ(LibQuorvelBin_ConfigOperation(3), -1); }),
              "LibQuorvelBin_ConfigOperation\nLibQuorvelBin_ConfigOperation:default\n");
}

}  // namespace
