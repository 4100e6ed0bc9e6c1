// Real interfaces, made for each test in a network namespace of this process.
#pragma once

#include <stdlib.h>

#include "support/scenario.h"

// Runs ip(8).
inline void ip(const std::string& arguments) {
    ASSERT_EQ(system(("ip " + arguments).c_str()), 0) << "ip " << arguments;
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
