#include "services/firewall_rules.h"

#include <stdio.h>
#include <string.h>

#include "foundation/answer.h"
#include "foundation/line_reader.h"
#include "foundation/shell.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"
#include "quorvel/services.h"

namespace quorvel {

namespace {

constexpr char kFieldSeparator[] = "<>";
constexpr size_t kLineSize = 1024;

using Rule = Text<128>;

void run_iptables(const Rule& rule) {
    if (rule.cut) return;
    (void)run_command(Text<kCommandSize>("iptables %s", rule.c_str()));
}

// The rules for one port, in the order in which they are added. Packets that leave are matched by
// the port they go to.
struct PortRule {
    const char* chain;
    const char* protocol;
    const char* direction;
};

constexpr PortRule kPortRules[] = {
    {"INPUT",  "tcp", "-i"},
    {"INPUT",  "udp", "-i"},
    {"OUTPUT", "tcp", "-o"},
    {"OUTPUT", "udp", "-o"},
};

const firewall_service* find_service(const char* name) {
    for (const firewall_service& service : set_firewall_tab) {
        if (strcmp(service.name, name) == 0) return &service;
    }
    return nullptr;
}

// The interfaces that the flags of a line are for, in order.
struct Interfaces {
    const char* kind;
    int count;
};

// Bonded ports are one interface, whose flag is that of port 0.
Interfaces current_interfaces() {
    if (LibQuorvelBin_IsBondingMode() == 1) return {"bond", 1};
    return {"eth", network_port_count()};
}

// A missing flag allows, and so does everything but "0".
bool is_denied(const char* line, int port) {
    char flag[kLineSize] = "";
    (void)LibQuorvelBin_GetSpecifiedKey(flag, sizeof flag, line, kFieldSeparator, port + 2);
    return strcmp(flag, "0") == 0;
}

void deny_service(const firewall_service& service, const char* interface) {
    for (int i = 0; i < service.port_count; i++) {
        for (const PortRule& rule : kPortRules) {
            run_iptables(Rule("-A %s -p %s --dport %d -j DROP %s %s", rule.chain, rule.protocol, service.ports[i],
                              rule.direction, interface));
        }
    }
}

void apply_line(const char* line, const Interfaces& interfaces) {
    char name[kLineSize] = "";
    (void)LibQuorvelBin_GetSpecifiedKey(name, sizeof name, line, kFieldSeparator, 1);
    printf("%20s | ", name);
    const firewall_service* service = find_service(name);
    // Whatever comes next continues on the same screen line.
    if (service == nullptr) return;
    for (int port = 0; port < interfaces.count; port++) {
        bool denied = is_denied(line, port);
        fputs(denied ? "  D  | " : "     | ", stdout);
        if (denied) deny_service(*service, Text<32>("%s%d", interfaces.kind, port).c_str());
    }
    putchar('\n');
}

}  // namespace

int network_port_count() {
    QuietScope quiet;
    return LibQuorvelBin_GetConfValByKey(kNetworkPortCount);
}

void flush_rules() {
    run_iptables(Rule("--table filter --flush"));
}

void apply_ports_file(int descriptor) {
    Interfaces interfaces = current_interfaces();
    LineReader reader(descriptor, kLineSize - 1);
    char line[kLineSize];
    while (next_line(reader, line, sizeof line))
        apply_line(line, interfaces);
}

}  // namespace quorvel
