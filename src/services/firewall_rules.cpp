#include "services/firewall_rules.h"

#include <errno.h>
#include <string.h>
#include <sys/stat.h>

#include <span>

#include "foundation/appliance_files.h"
#include "foundation/child.h"
#include "foundation/feature_settings.h"
#include "foundation/key_value.h"
#include "foundation/line_reader.h"
#include "foundation/shell.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

namespace quorvel {

namespace {

constexpr char kFieldSeparator[] = "<>";
constexpr size_t kLineSize = 1024;

using Command = Text<kCommandSize>;

// A service that is kept off an interface.
struct Denial {
    const firewall_service* service;
    int interface;
};

// The rules of one port, in the order in which they are added. Packets that leave are matched by the port they go to.
struct DropRule {
    const char* packets;
    char interface_option;
};
constexpr DropRule kDropRules[] = {
    {"INPUT -p tcp",  'i'},
    {"INPUT -p udp",  'i'},
    {"OUTPUT -p tcp", 'o'},
    {"OUTPUT -p udp", 'o'},
};

const firewall_service* find_service(const char* name) {
    for (const firewall_service& service : set_firewall_tab) {
        if (strcmp(service.name, name) == 0) return &service;
    }
    return nullptr;
}

// A missing flag allows, and so does everything but "0". No line has as many fields as characters.
bool is_denied(const char* line, int interface) {
    char flag[kLineSize] = "";
    return interface < static_cast<int>(kLineSize) &&
           LibQuorvelBin_GetSpecifiedKey(flag, sizeof flag, line, kFieldSeparator, interface + 2) == 0 &&
           strcmp(flag, "0") == 0;
}

// A setting that is not there has a meaning. One that cannot be read has none: rules for the wrong interfaces, or for
// no interface, would leave everything open.
[[nodiscard]] bool read_interfaces(RulePlan& plan) {
    errno = 0;
    plan.asks_port_count = LibQuorvelBin_IsBondingMode() != 1;
    if (!plan.asks_port_count) {
        // Bonded ports are one interface, whose flag is that of port 0.
        plan.kind = "bond";
        plan.interfaces = 1;
        return true;
    }
    if (errno != 0) return false;
    plan.interfaces = LibQuorvelBin_GetConfOnOffValInIntByKey(kNetworkPortCount);
    return plan.interfaces != -1 || !could_not_be_read(errno);
}

void plan_line(const char* line, RulePlan& plan) {
    char name[kLineSize] = "";
    (void)LibQuorvelBin_GetSpecifiedKey(name, sizeof name, line, kFieldSeparator, 1);  // none is an unknown service
    FILE* table = plan.table.stream.get();
    fprintf(table, "%20s | ", name);
    Denial denial = {find_service(name), 0};
    // Whatever comes next continues on the same screen line.
    if (denial.service == nullptr) return;
    for (; denial.interface < plan.interfaces; denial.interface++) {
        bool denied = is_denied(line, denial.interface);
        fputs(denied ? "  D  | " : "     | ", table);
        if (denied) fwrite(&denial, sizeof denial, 1, plan.denials.stream.get());
    }
    fputc('\n', table);
}

bool is_whole(const Collected& collected) {
    return fflush(collected.stream.get()) == 0 && ferror(collected.stream.get()) == 0;
}

// How many commands failed, and the first that did.
struct Loading {
    const Descriptor& turn;
    int failures = 0;
    Command first_failed;
};

void run(const Command& command, Loading& loading) {
    const bool done = run_command(command) == 0;
    if (loading.turn) (void)futimens(loading.turn.number, nullptr);
    if (!done && loading.failures++ == 0) loading.first_failed = command;
}

void add_rules(const Denial& denial, const char* kind, Loading& loading) {
    for (int port : std::span(denial.service->ports, static_cast<size_t>(denial.service->port_count))) {
        for (const DropRule& rule : kDropRules) {
            run(Command("%s -A %s --dport %d -j DROP -%c %s%d", files::kFilterTool, rule.packets, port,
                        rule.interface_option, kind, denial.interface),
                loading);
        }
    }
}

}  // namespace

bool read_ports(Descriptor file, RulePlan& plan) {
    if (!plan.denials.stream || !plan.table.stream) return false;
    if (!read_interfaces(plan)) return false;
    LineFile lines(static_cast<Descriptor&&>(file), kLineSize - 1);
    for (const char* line : lines)
        plan_line(line, plan);
    return !lines.reader.failed && is_whole(plan.denials) && is_whole(plan.table);
}

bool apply_rules(const RulePlan& plan, const Descriptor& turn) {
    Loading loading = {turn, 0, {}};
    // A reader that does not read stops the command here, where nothing is begun.
    (void)fflush(stdout);
    {
        HeldSignals until_complete;
        run(Command("%s --table filter --flush", files::kFilterTool), loading);
        const auto* denials = reinterpret_cast<const Denial*>(plan.denials.bytes);
        for (const Denial& denial : std::span(denials, plan.denials.size / sizeof *denials))
            add_rules(denial, plan.kind, loading);
    }
    const int failures = loading.failures;
    if (failures > 0)
        fprintf(stderr, "firewall: commands that failed: %d, first \"%s\"\n", failures, loading.first_failed.c_str());
    return failures == 0;
}

}  // namespace quorvel
