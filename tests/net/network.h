// Real interfaces, made for each test in a network namespace of this process, and the entry points that are asked.
#pragma once

#include <stdlib.h>

#include <sstream>

#include "support/appliance.h"

// Runs ip(8).
inline void ip(const std::string& arguments) {
    ASSERT_EQ(system(("ip " + arguments).c_str()), 0) << "ip " << arguments;
}

struct CommandRow {
    std::string line;
    int result;
    std::string output;
};

// Checks result and standard output of an entry point, row by row in one process.
inline void expect_answers(int (*entry)(int, char**), const std::vector<CommandRow>& rows) {
    for (const auto& row : rows) {
        std::istringstream words(row.line);
        std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
        std::vector<char*> argv;
        for (auto& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        EXPECT_EQ(printed_by([&] { EXPECT_EQ(entry(int(arguments.size()), argv.data()), row.result) << row.line; }),
                  row.output)
            << row.line;
    }
}

class NetTest : public ApplianceTest {
protected:
    void SetUp() override {
        ApplianceTest::SetUp();
        ASSERT_EQ(system("for i in $(ip -o link show | sed -E 's/^[0-9]+: ([^:@]+).*/\\1/'); do"
                         " [ $i = lo ] || ip link delete $i 2>/dev/null; done; true"),
                  0);
        ip("link add eth0 index 40 address 02:0b:7e:10:00:ab mtu 1400 type veth peer name eth1 index 41");
        ip("link set eth0 up");
        ip("link set eth1 up");
        ip("address add 192.168.11.150/22 broadcast 192.168.11.255 dev eth0");
        ip("address add 10.20.30.40 peer 10.20.30.41/30 dev eth1");
        ip("link add br0 index 70 address 02:0b:7e:10:00:cd type bridge");
    }
};
