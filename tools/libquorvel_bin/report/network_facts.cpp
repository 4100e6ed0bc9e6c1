// Interfaces, their addresses and links, and the name servers.
#include <errno.h>
#include <linux/if.h>
#include <stdio.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/gather.h"
#include "report/sources.h"
#include "report/tools.h"

namespace report {

namespace {

using quorvel::Text;

constexpr char kNoAddress[] = "no address set";
constexpr char kLinkDown[] = "the link does not tell it";

Text<16> dotted(const uint8_t (&octets)[4]) {
    return Text<16>("%u.%u.%u.%u", octets[0], octets[1], octets[2], octets[3]);
}

void gather_address(InterfaceFacts& interface, const char* name) {
    struct host_info info = {};
    if (LibQuorvelBin_FillInfo(&info, name) != 0) {
        for (Words* words : {&interface.address, &interface.netmask, &interface.network, &interface.broadcast})
            set_unknown(*words, kNoAddress);
        return set_unknown(interface.prefix_length, kNoAddress);
    }
    set(interface.address, dotted(info.ip.u_ip).c_str());
    set(interface.netmask, dotted(info.mask.u_ip).c_str());
    set(interface.network, dotted(info.net_addr.u_ip).c_str());
    set(interface.prefix_length, info.mask_size);
    uint32_t broadcast = 0;
    uint8_t octets[4];
    const bool told = Netdev_GetBroadAddr(name, &broadcast) == 0;
    memcpy(octets, &broadcast, sizeof octets);
    set_unless_empty(interface.broadcast, told ? dotted(octets).c_str() : "", kNoAddress);
}

void gather_link(InterfaceFacts& interface, const char* name) {
    const auto attribute = [name](const char* what) { return Text<320>("/sys/class/net/%s/%s", name, what); };
    set_from(interface.mac, attribute("address").c_str());
    set_from(interface.mtu_bytes, attribute("mtu").c_str());
    set_from(interface.link, attribute("carrier").c_str());
    const int flags = Netdev_GetFlags(name);
    if (flags != -1) set(interface.up, (flags & IFF_UP) != 0);
    if (flags == -1) set_unknown(interface.up, "the kernel does not tell it");
    if (!is_known(interface.link) && flags != -1) set(interface.link, (flags & IFF_RUNNING) != 0);
}

// Speed and duplex from the report that the library makes for one interface.
void gather_speed(InterfaceFacts& interface, const char* name, const Quiet& quiet) {
    int result = -1;
    const quorvel::Heap<char> report = answer_of(quiet, LibQuorvelBin_EthInfo, {"ethinfo", name}, result);
    const std::string_view text = report != nullptr ? report.get() : "";
    std::string_view value;
    int64_t bits = 0;
    const bool told = result == 0 && find_setting(text, "link", value) && to_number(value, bits, 1000000) && bits > 0;
    set_unless_negative(interface.speed_bits_per_second, told ? bits : -1, kLinkDown);
    set_unknown(interface.full_duplex, kLinkDown);
    if (told && find_setting(text, "duplex", value)) set(interface.full_duplex, value == "full");
}

void add_interface(Facts& facts, const char* name, const Quiet& quiet) {
    InterfaceFacts* interface = add(facts.interfaces);
    if (interface == nullptr) return;
    set(interface->name, name);
    gather_address(*interface, name);
    gather_link(*interface, name);
    gather_speed(*interface, name, quiet);
    set(interface->enabled, LibQuorvelBin_IsNetIfEnabled(name) == 1);
    set(interface->dhcp, LibQuorvelBin_IsNetIfDhcp(name) == 1);
}

void sort_by_name(List<InterfaceFacts>& interfaces) {
    for (size_t i = 1; i < interfaces.count; i++) {
        for (size_t k = i; k > 0; k--) {
            InterfaceFacts& before = interfaces.items[k - 1];
            if (strcmp(text_of(before.name), text_of(interfaces.items[k].name)) > 0)
                std::swap(before, interfaces.items[k]);
        }
    }
}

// Servers that the appliance's own settings have first, then those of the resolver; no line tells of two.
constexpr unsigned kMostServers = 8;

void add_server(Facts& facts, std::string_view address) {
    for (const NameServerFacts& server : facts.name_servers) {
        if (address == text_of(server.address)) return;
    }
    NameServerFacts* server = add(facts.name_servers);
    if (server != nullptr) set(server->address, address);
}

// It would be one of the tool's options, and the tool would ask nobody.
bool is_option(const NameServerFacts& server) {
    return quorvel::starts_with(text_of(server.address), "-");
}

bool add_question(List<Tool>& tools, const NameServerFacts& server) {
    Tool* tool = add(tools);
    if (tool == nullptr) return false;
    const char* words[] = {"nslookup", "-timeout=3", "-retry=1", text_of(server.address)};
    std::copy(std::begin(words), std::end(words), tool->arguments);
    return true;
}

void take_answer(Truth& answers, const Tool& tool) {
    if (tool.reason != nullptr) return set_unknown(answers, tool.reason);
    set(answers, printed_by(tool).find("timed out") == std::string_view::npos);
}

void ask_servers(Facts& facts) {
    List<Tool> tools;
    for (const NameServerFacts& server : facts.name_servers) {
        if (!is_option(server) && !add_question(tools, server)) return;
    }
    run_tools({tools.items, tools.count}, 2 * kToolMilliseconds);
    size_t next = 0;
    for (NameServerFacts& server : facts.name_servers) {
        if (is_option(server)) {
            set_unknown(server.answers, "no address");
        } else {
            take_answer(server.answers, tools.items[next++]);
        }
    }
}

}  // namespace

void gather_interfaces(Facts& facts, const Quiet& quiet) {
    const quorvel::Directory names = quorvel::open_directory(quorvel::files::kNetInterfaces);
    facts.interfaces.reason = names ? nullptr : strerror(errno);
    while (const struct dirent* entry = names ? readdir(names.get()) : nullptr) {
        const Text<320> address(quorvel::files::kNetAddressFormat, entry->d_name);
        // Some entries are no interfaces.
        if (!quorvel::is_dot_entry(entry->d_name) && quorvel::path_exists(address.c_str()))
            add_interface(facts, entry->d_name, quiet);
    }
    sort_by_name(facts.interfaces);
}

void gather_name_servers(Facts& facts, bool reach) {
    facts.name_servers.reason = nullptr;
    for (unsigned n = 1; n <= kMostServers; n++) {
        char server[129] = "";
        if (LibQuorvelBin_GetDNS(n, "resolver", server) == 0 && server[0] != '\0') add_server(facts, server);
    }
    if (reach) ask_servers(facts);
    for (NameServerFacts& server : facts.name_servers) {
        if (!reach) set_unknown(server.answers, "asked with --reach only");
    }
}

}  // namespace report
