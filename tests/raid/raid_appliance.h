// An appliance with arrays: mdadm shows what was put down for a device, and the md driver answers from a script.
#pragma once

#include <linux/raid/md_u.h>

#include <deque>

#include "quorvel/foundation.h"
#include "quorvel/raid.h"
#include "raid/inventory.h"
#include "raid/list.h"
#include "support/scenario.h"

/// Answers of the md driver, in order; a negative minor stands for a node without an array, which is refused.
inline std::deque<mdu_array_info_t> driver_answers;

inline mdu_array_info_t running(int minor, int level, int members, int missing = 0) {
    const int present = members - missing;
    return {0, 90, 0, 0, level, 0, 0, members, minor, 0, 0, 1, present, present, missing, 0, 0, 0};
}
inline const mdu_array_info_t inactive = running(-1, 0, 0);

/// What a tool printed when it was captured, or what the library is to print.
inline std::string text_of(const std::string& name) {
    return read_file("/source/tests/raid/" + name + ".txt");
}

/// A row's numbers as text.
inline std::string text_of(std::initializer_list<int> numbers) {
    std::string text;
    for (int number : numbers)
        text += " " + std::to_string(number);
    return text;
}

/// What a list holds, a text for each record in order.
template <typename Record, typename TextOf>
std::string text_of(const list_links& list, TextOf&& text_of_record) {
    std::string text;
    for (auto* record = quorvel::first_of<Record>(list); record != nullptr; record = quorvel::next_of(record, list))
        text += text_of_record(*record) + "\n";
    return text;
}

/// A superblock as mdadm shows it, in short.
inline std::string superblock(const std::string& uuid, int level, int devices, int present, int minor) {
    char text[512];
    snprintf(text, sizeof text,
             "UUID : %s\nRaid Level : raid%d\nRaid Devices : %d\nTotal Devices : %d\nPreferred Minor : %d\n",
             uuid.c_str(), level, devices, present, minor);
    return text;
}

class RaidTest : public ApplianceTest {
protected:
    void SetUp() override {
        ApplianceTest::SetUp();
        stand_in("/sbin/mdadm", "cat /run/mdadm/${2##*/} 2>/dev/null");
        stand_in("/usr/local/sbin/frontctl", "printf 'hdd1=on\\nhdd2=off\\n'");
        memset(md_trans_tbl, 0, sizeof md_trans_tbl);
        model(4, 2);
    }
    void TearDown() override { EXPECT_TRUE(driver_answers.empty()); }

    static void model(int disks, int arrays, const std::string& more = "SUPPORT_HOT_SWAP=off\n") {
        const std::string counts =
            "MAX_DISK_NUM=" + std::to_string(disks) + "\nMAX_ARRAY_NUM=" + std::to_string(arrays);
        write_file("/etc/nas_feature",
                   counts + "\nDEVICE_HDD1_LINK=disk1_6\nDEVICE_MD1_REAL=md2\nDEVICE_MD2_REAL=md3\n" + more);
        for (int i = 0; i < disks; i++) {
            const std::string host = std::to_string(i), target = "/device/target" + host + ":0:0/" + host + ":0:0:0";
            make_directory("/sys/class/scsi_host/host" + host + target + "/block:sd" + static_cast<char>('a' + i));
            write_file("/dev/disk" + std::to_string(i + 1), std::string(84, '\0'));
        }
    }
    static void mdadm_shows(const std::string& device, const std::string& text) {
        write_file("/run/mdadm/" + device, text);
    }
    static std::string helper(std::vector<std::string> words) {
        words.insert(words.begin(), "md");
        const Answer answer = call(LibQuorvelBin_MdHelper, words);
        EXPECT_EQ(0, answer.result);
        return answer.text;
    }
};
