// The Ethernet report: MAC address, link speed, duplex and MTU.
#include "net/ethernet_report.h"

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <stdio.h>
#include <sys/ioctl.h>

#include <span>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/feature_settings.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/options.h"
#include "foundation/text.h"
#include "net/interface_request.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

constexpr int kNoDevice = -17;
constexpr int kEmptyFile = -12;

using Path = Text<320>;

// Prints a failure line, which only a command front end wants to see. errno stays.
__attribute__((format(printf, 1, 2))) void report(const char* format, ...) {
    if (from_cmdline == 0) return;
    KeptErrno kept;
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
}

// The first line of an attribute file. A file that did not open leaves `text` as it was and is no error.
[[nodiscard]] int read_attribute(Descriptor opened, const Path& path, std::span<char> text) {
    if (!opened) {
        report("Failed to open %s\n", path.c_str());
        return 0;
    }
    LineFile file(static_cast<Descriptor&&>(opened), text.size() - 1);
    char* line = next_line(file.reader);
    if (line == nullptr) return fail(ENODATA, kEmptyFile);
    cut_at_line_feed(line);
    copy_text(text.data(), text.size(), line);
    return 0;
}

[[nodiscard]] int read_mtu(struct eth_info& info, const char* ifname) {
    Path path(files::kNetMtuFormat, ifname);
    char mtu[16] = "";
    int failure = read_attribute(open_for_reading(path), path, mtu);
    if (failure == 0) info.mtu = leading_int(mtu);
    return failure;
}

int speed_of(const struct ethtool_cmd& settings) {
    uint32_t speed = ethtool_cmd_speed(&settings);
    bool known = speed != 0 && speed != 0xffff && speed != 0xffffffff;
    return known ? static_cast<int>(speed) : 0;
}

void ask_driver(struct eth_info& info, const char* ifname) {
    Descriptor open_socket = interface_socket();
    if (!open_socket) return report("Failed to open socket\n");
    struct ethtool_cmd settings = {};
    settings.cmd = ETHTOOL_GSET;
    struct ifreq request = request_for(ifname);
    request.ifr_data = reinterpret_cast<char*>(&settings);
    if (ioctl(open_socket.number, SIOCETHTOOL, &request) == -1) return report("Failed to ioctl\n");
    info.link = speed_of(settings);
    info.duplex = settings.duplex == DUPLEX_FULL ? 1 : 0;
}

void print_record(const struct eth_info& info) {
    printf("MAC=%s\n", info.mac);
    printf("link=%d\n", info.link);
    printf("duplex=%s\n", info.duplex == 1 ? "full" : "half");
    puts("jumboframe=enable");
    printf("mtu=%d\n", info.mtu);
}

int report_every_port() {
    int count = network_port_count();
    for (int i = 0; i < count; i++) {
        struct eth_info info = {};
        Text<32> name("eth%d", i);
        if (read_eth_info(&info, name.c_str()) != 0) {
            report("Failed to get eth information (%s)\n", name.c_str());
            return -1;
        }
        if (from_cmdline != 0) {
            printf("[%s]\n", name.c_str());
            print_record(info);
        }
        puts("");
    }
    return 0;
}

int report_one(const char* ifname) {
    struct eth_info info = {};
    if (read_eth_info(&info, ifname) != 0) return -1;
    print_record(info);
    return 0;
}

int refuse(const char* word) {
    puts("Argument is wrong!\n\nUsage is below\n");
    printf("%s <interface name>\n", word);
    printf("like : %s eth0\n", word);
    return fail(EINVAL);
}

}  // namespace

int read_eth_info(struct eth_info* info, const char* ifname) {
    if (info == nullptr || ifname == nullptr) return fail(EINVAL, kNoDevice);
    Path address(files::kNetAddressFormat, ifname);
    bool named = is_directory_name(ifname);
    Descriptor address_file = named ? open_for_reading(address) : Descriptor();
    // A file that opens shows that its directory is there: the directory is opened in need only.
    if (!address_file && (!named || IsDirExist(Path(files::kNetInterfaceFormat, ifname).c_str()) == 0)) {
        report("Specified device is not exist\n");
        return fail(ENODEV, kNoDevice);
    }
    int failure = read_attribute(static_cast<Descriptor&&>(address_file), address, info->mac);
    if (failure == 0) failure = read_mtu(*info, ifname);
    if (failure != 0) return failure;
    ask_driver(*info, ifname);
    return 0;
}

int LibQuorvelBin_EthInfo(int argc, char** argv) {
    int count = argument_count(argc, argv);
    if (count == 1) return report_every_port();
    if (count == 2) return report_one(argv[1]);
    return refuse(count > 0 ? argv[0] : "");
}
