// Wiping the NAND partitions, with stand-in tools.
#include "hw/nand_erase.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "quorvel/hw.h"
#include "support/appliance.h"

namespace {

class NandErase : public ApplianceTest {};

TEST_F(NandErase, ErasesOnlyWhenBootingFromNandIsOff) {
    auto rows = table<7>("hw/expected/nand-erasures");
    const std::string fill(1100, 'x');  // a line is read in pieces
    rows.back()[3] = fill + ": \"nboot\"\n\"nroot\"" + fill + ": 1\n";
    for (const auto& [result, nvram, eraser, list, nvram_calls, eraser_calls, printed] : rows) {
        SetUp();
        if (!nvram.empty()) stand_in("/usr/local/sbin/nvram", nvram);
        stand_in("/usr/local/sbin/flash_eraseall", eraser);
        if (!list.empty()) write_file("/proc/mtd", list);
        Capture errors(2), output;
        EXPECT_EQ(LibQuorvelBin_NandErase(), std::stoi(result)) << nvram << eraser;
        EXPECT_EQ(output.text(), printed);
        EXPECT_EQ(read_file("/run/stand-in/nvram"), nvram_calls) << nvram;
        EXPECT_EQ(read_file("/run/stand-in/flash_eraseall"), eraser_calls) << nvram;
    }
}

TEST_F(NandErase, FailsWithoutAPipeToItsTool) {
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none = {3, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    const int results[] = {get_nand_boot(), clear_nand_boot()};
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(results[0], -1);
    EXPECT_EQ(results[1], -1);
}

TEST_F(NandErase, FinishesWhatItBegan) {
    stand_in("/usr/local/sbin/nvram", "echo EnableNandBoot=1; kill -TERM $(cat /run/caller)");
    stand_in("/usr/local/sbin/flash_eraseall", "kill -HUP $(cat /run/caller)");
    write_file("/proc/mtd", "mtd2: 1 1 \"nboot\"\nmtd7: 1 1 \"nroot\"\n");
    const pid_t caller = fork();
    if (caller == 0) {
        write_file("/run/caller", std::to_string(getpid()));
        int ends[2];
        if (pipe(ends) == 0) dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);  // nobody reads
        exit(LibQuorvelBin_NandErase());
    }
    int status = 0;
    waitpid(caller, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(calls("flash_eraseall"), (std::vector<std::string>{"/dev/mtdchar2", "/dev/mtdchar7"}));
}

}  // namespace
