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

using Command = Text<kCommandSize>;

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

// A missing flag allows, and so does everything but "0". No line has as many fields as characters.
bool is_denied(const char* line, int port) {
    if (port >= static_cast<int>(kLineSize)) return false;
    char flag[kLineSize] = "";
    (void)LibQuorvelBin_GetSpecifiedKey(flag, sizeof flag, line, kFieldSeparator, port + 2);
    return strcmp(flag, "0") == 0;
}

// The beginning of a rule, and the option in front of its interface.
struct DropRule {
    std::string_view begin;
    std::string_view direction;
};

constexpr DropRule kDropRules[] = {
    {"iptables -A INPUT -p tcp --dport ",  " -i "},
    {"iptables -A INPUT -p udp --dport ",  " -i "},
    {"iptables -A OUTPUT -p tcp --dport ", " -o "},
    {"iptables -A OUTPUT -p udp --dport ", " -o "},
};

// Packets that leave are matched by the port they go to.
void deny_port(int port, std::string_view interface) {
    Text<32> target("%d -j DROP", port);
    for (const DropRule& rule : kDropRules) {
        Command command;
        for (std::string_view part : {rule.begin, std::string_view(target.c_str()), rule.direction, interface})
            command.add(part);
        (void)run_command(command);
    }
}

void deny_service(const firewall_service& service, std::string_view interface) {
    for (int i = 0; i < service.port_count; i++)
        deny_port(service.ports[i], interface);
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
    (void)run_command(Command("iptables --table filter --flush"));
}

void apply_ports_file(int descriptor) {
    Interfaces interfaces = current_interfaces();
    LineReader reader(descriptor, kLineSize - 1);
    char line[kLineSize];
    while (next_line(reader, line, sizeof line))
        apply_line(line, interfaces);
}

}  // namespace quorvel
