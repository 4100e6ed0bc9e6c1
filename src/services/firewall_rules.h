// The rules of the kernel's filter table that a ports file stands for: understood whole before anything is changed,
// then one iptables command each.
#pragma once

#include <stddef.h>
#include <stdio.h>

#include "foundation/handles.h"
#include "quorvel/services.h"

namespace quorvel {

/// Bytes that are written as to a file and stay in memory.
struct Collected {
    Collected() : stream(open_memstream(&bytes, &size)) {}
    ~Collected() {
        stream.reset();
        free(bytes);
    }
    Collected(const Collected&) = delete;
    Collected& operator=(const Collected&) = delete;

    char* bytes = nullptr;  // valid behind is_whole
    size_t size = 0;
    File stream;
};

/// What a ports file asks for.
struct RulePlan {
    const char* kind = "eth";  // of the interfaces: eth0, eth1 ... or bond0
    int interfaces = 0;
    bool asks_port_count = false;  // the number of interfaces is the model's number of Ethernet ports
    Collected denials;             // one behind the other
    Collected table;               // what is to be printed
};

/// Fills a plan from a ports file; the descriptor may be none. False, with errno, when the file could not be read to
/// its end, or what it takes of the settings not at all, or memory ran out.
[[nodiscard]] bool read_ports(Descriptor file, RulePlan& plan);

/// Removes every rule of the filter table, whoever made it, then adds those of the plan. Behind each command the file
/// of the caller's turn, which may be none, has the time of that. What fails is told on standard error behind the last
/// command, and false then; nothing else is printed.
[[nodiscard]] bool apply_rules(const RulePlan& plan, const Descriptor& turn);

}  // namespace quorvel
