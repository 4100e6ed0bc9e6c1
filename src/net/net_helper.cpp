// The net helper: address, netmask, prefix length and network address, of interfaces or of figures given on the command
// line.
#include <stdio.h>
#include <string.h>

#include "foundation/failure.h"
#include "foundation/options.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

constexpr char kMajor[] = "1";
constexpr char kMinor[] = "00";

// The fields of -o, tried from the top by prefix: "mask" is one of "mask_size".
struct Field {
    const char* word;
    int selection;
};
// clang-format off
constexpr Field kFields[] = {
    {"ip_addr",   NET_INFO_IP},
    {"mask_size", NET_INFO_MASK_SIZE},
    {"mask",      NET_INFO_MASK},
    {"net_addr",  NET_INFO_NET_ADDR},
};
// clang-format on

struct Options {
    int selection = -1;
    bool calculate = false;
    char if_name[sizeof host_info::if_name] = "";
    struct host_info given = {};  // address and netmask
};

// What an option leaves to do.
enum class Next { go_on, done, failed };

[[nodiscard]] int complete(struct host_info& info) {
    info.mask_size = LibQuorvelBin_GetMaskSize(&info.mask);
    return LibQuorvelBin_GetNetip(&info.ip, &info.mask, &info.net_addr);
}

void print_text(const char* label, const char* text, size_t size) {
    printf("%s%.*s\n", label, static_cast<int>(size), text);
}

void print_octets(const char* label, const struct ip_record& record) {
    printf("%s%u.%u.%u.%u\n", label, record.u_ip[0], record.u_ip[1], record.u_ip[2], record.u_ip[3]);
}

void print_version() {
    printf("Version %s.%s\n", kMajor, kMinor);
}

void print_usage() {
    puts("Quorvel net_helper command");
    print_version();
    puts("");
    puts("    -i : specify interface name.");
    printf("    -o : option(%s %s %s %s).\n", "ip_addr", "mask", "mask_size", "net_addr");
    printf("         %s\t: show interface's ip address.\n", "ip_addr");
    printf("         %s\t\t: show interface's subnet address.\n", "mask");
    printf("         %s\t: show interface's subnet size.\n", "mask_size");
    printf("         %s\t: show interface's network address.\n", "net_addr");
    puts("    -c : calculation network mask, network size.");
    puts("         use like this(This example returns ip address's network address.");
    puts("         net -c -I 192.168.11.12 -M 255.255.255.0 -o net_addr");
    puts("    -I : specify IP address for calculation.");
    puts("    -M : specify netmask for calculation.");
    puts("    -h : show this message.");
    puts("");
    puts("supported interfaces are below");
    printf("         ");
    for (const auto& name : target_ifs)
        printf("%s%s", &name == &target_ifs[0] ? "" : ", ", name);
    puts("");
}

Next select_field(Options& options, const char* argument) {
    trace(kTrace, "optarg=%s\n", argument);
    for (const Field& field : kFields) {
        if (!starts_with(argument, field.word)) continue;
        options.selection = field.selection;
        return Next::go_on;
    }
    printf("Invalid argument(%s)!!!\n", argument);
    return Next::failed;
}

// Up to 16 characters, so a text of that length stays without a terminator.
void keep_address(const char* name, struct ip_record& record, const char* argument) {
    record = {};
    memcpy(record.sz_ip, argument, strnlen(argument, sizeof record.sz_ip));
    trace(kTrace, "host_info.%s.sz_ip=%.*s\n", name, static_cast<int>(sizeof record.sz_ip), record.sz_ip);
}

Next take_option(Options& options, int letter) {
    switch (letter) {
        case 'd':
            debug = 1;
            return Next::go_on;
        case 'v':
        case 'V':
            print_version();
            return Next::done;
        case '-':
            return Next::go_on;
        case 'i':
            copy_text(options.if_name, sizeof options.if_name, optarg);
            return Next::go_on;
        case 'o':
            return select_field(options, optarg);
        case 'c':
            trace(kTrace, "Entering network addr calc mode\n");
            options.calculate = true;
            return Next::go_on;
        case 'I':
            keep_address("ip", options.given.ip, optarg);
            return Next::go_on;
        case 'M':
            keep_address("mask", options.given.mask, optarg);
            return Next::go_on;
        case 'h':
            print_usage();
            return Next::done;
        default:
            return Next::failed;
    }
}

int print_every_interface() {
    struct host_info info = {};
    for (const auto& name : target_ifs) {
        if (LibQuorvelBin_FillInfo(&info, name) == 0) LibQuorvelBin_PrintNetInfo(&info, -1);
    }
    return 0;
}

int calculate(struct host_info& info) {
    if (LibQuorvelBin_IpAtoU(&info.ip) != 0 || LibQuorvelBin_IpAtoU(&info.mask) != 0) return -1;
    return complete(info);
}

int answer(Options& options) {
    struct host_info& info = options.given;
    int result = options.calculate ? calculate(info) : LibQuorvelBin_FillInfo(&info, options.if_name);
    return result == 0 ? LibQuorvelBin_PrintNetInfo(&info, options.selection) : -1;
}

}  // namespace

int LibQuorvelBin_FillInfo(struct host_info* info, const char* ifname) {
    if (info == nullptr || ifname == nullptr) return fail(EINVAL);
    LibQuorvelBin_Init(info);
    memset(info->if_name, 0, sizeof info->if_name);
    copy_text(info->if_name, sizeof info->if_name, ifname);
    if (LibQuorvelBin_GetIpInfo(ifname, &info->ip) != 0) return -1;
    if (LibQuorvelBin_GetNetmask(ifname, &info->mask) != 0) return -1;
    return complete(*info);
}

int LibQuorvelBin_PrintNetInfo(const struct host_info* info, int selection) {
    if (info == nullptr) return fail(EINVAL);
    bool labelled = (selection & NET_INFO_LABELS) != 0;
    auto label = [labelled](const char* text) { return labelled ? text : ""; };
    if (labelled) putchar('\n');
    if (selection & NET_INFO_IF_NAME) print_text(label("if_name  :"), info->if_name, sizeof info->if_name);
    if (selection & NET_INFO_HOSTNAME) print_text(label("hostname :"), info->hostname, sizeof info->hostname);
    if (selection & NET_INFO_IP) print_octets(label("ip       :"), info->ip);
    if (selection & NET_INFO_MASK) print_octets(label("mask     :"), info->mask);
    if (selection & NET_INFO_MASK_SIZE) printf("%s%u\n", label("mask_size:"), info->mask_size);
    if (selection & NET_INFO_NET_ADDR) print_octets(label("net_addr :"), info->net_addr);
    return 0;
}

int LibQuorvelBin_NetHelper(int argc, char** argv) {
    int count = argument_count(argc, argv);
    if (count < 2) return fail(EINVAL);
    if (count == 2) return print_every_interface();

    Options options;
    OptionVector vector(count - 1, argv + 1);
    if (!vector) return fail(EINVAL);
    for (int letter; (letter = getopt(vector.count, vector.arguments, "dvV-:i:o:cI:M:h")) != -1;) {
        Next next = take_option(options, letter);
        if (next != Next::go_on) return next == Next::done ? 0 : fail(EINVAL);
    }
    return answer(options);
}
