// Real interfaces, made for each test in a network namespace of this process, and the entry points that are asked.
#pragma once

#include <stdlib.h>

#include <sstream>

#include "support/appliance.h"

// Runs ip(8).
inline void ip(const std::string& arguments) {
    ASSERT_EQ(system(("ip " + arguments).c_str()), 0) << "ip " << arguments;
}

// Checks result and standard output of an entry point for a command line.
inline void expect_answer(int (*entry)(int, char**), const std::string& line, int result, const std::string& output) {
    std::istringstream stream(line);
    std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    std::vector<char*> argv;
    for (auto& word : words)
        argv.push_back(word.data());
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(entry(int(argv.size()), argv.data()), result) << line; }), output) << line;
}

class NetTest : public ApplianceTest {
protected:
    void SetUp() override {
        ApplianceTest::SetUp();
        ip("-o link show | sed -E 's/^[0-9]+: ([^:@]+).*/\\1/' | while read i; do ip link delete $i 2>/dev/null; done; "
           ":");
        ip("link add eth0 index 40 address 02:0b:7e:10:00:ab mtu 1400 type veth peer name eth1 index 41");
        ip("link set eth0 up; ip link set eth1 up");
        ip("address add 192.168.11.150/22 broadcast 192.168.11.255 dev eth0");
        ip("address add 10.20.30.40 peer 10.20.30.41/30 dev eth1");
        ip("link add br0 index 70 address 02:0b:7e:10:00:cd type bridge");
    }
};
