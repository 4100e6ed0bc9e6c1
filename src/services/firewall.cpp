// The firewall command: its options, its texts, and which ports file it uses.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/handles.h"
#include "foundation/options.h"
#include "quorvel/foundation.h"
#include "quorvel/services.h"
#include "services/firewall_rules.h"

using namespace quorvel;

namespace {

constexpr int kMajorVersion = 0;
constexpr int kMinorVersion = 11;
constexpr size_t kLongestPath = 1024;

int show_usage() {
    printf("\nQUORVEL INC. NAS firewall utility Ver.%d.%02d\n\n", kMajorVersion, kMinorVersion);
    puts("Usage   : firewall [ope]\n");
    puts("Bellows are acceptable operation([ope])");
    puts("  --start      : Start firewall. ");
    puts("  --stop       : Stop firewall. (Flush all talbes rules.");
    puts("  --restart    : Restart firewall.");
    puts("  --config     : Specify config file to use.");
    puts("  --def_config : Generate(modify to) default config file.");
    puts("  --ports_list : Show target ports list.");
    puts("  --version    : Show version.");
    puts("  --help       : Show this message.");
    puts("");
    return -1;
}

int show_version() {
    printf("Ver.%d.%02d\n", kMajorVersion, kMinorVersion);
    return 0;
}

int list_ports() {
    puts("\n----- Service name and ports list -----\n");
    for (const firewall_service& service : set_firewall_tab) {
        printf("%16s :", service.name);
        for (int i = 0; i < service.port_count; i++)
            printf("%6d", service.ports[i]);
        putchar('\n');
    }
    return 0;
}

// "1<>" for every port, or null.
Heap<char> allowing_flags(int ports) {
    constexpr char kAllow[] = "1<>";
    constexpr size_t kLength = sizeof kAllow - 1;
    size_t count = ports > 0 ? static_cast<size_t>(ports) : 0;
    Heap<char> flags(count < SIZE_MAX / kLength ? static_cast<char*>(malloc(kLength * count + 1)) : nullptr);
    if (!flags) return flags;
    for (size_t i = 0; i < count; i++)
        memcpy(flags.get() + i * kLength, kAllow, kLength);
    flags.get()[count * kLength] = '\0';
    return flags;
}

int write_default_file() {
    Heap<char> flags = allowing_flags(network_port_count());
    if (!flags) return -1;
    File file(fopen(files::kServicePorts, "we"));
    if (!file) {
        printf("Can't open config file(%s)\n", files::kServicePorts);
        return -1;
    }
    for (const firewall_service& service : set_firewall_tab)
        fprintf(file.get(), "%s<>%s;\n", service.name, flags.get());
    return fflush(file.get()) == 0 && ferror(file.get()) == 0 ? 0 : -1;
}

// The length of the conversion that printf would see at a "%", up to its letter; 0 when it would
// see none.
size_t conversion_length(const char* text) {
    constexpr char kFlags[] = "-+ #0'I";
    constexpr char kWidth[] = "*$0123456789";
    constexpr char kSizes[] = "hlLqjzt";
    constexpr char kLetters[] = "diouxXeEfFgGaAcCsSpnm";
    size_t length = 1;
    length += strspn(text + length, kFlags);
    length += strspn(text + length, kWidth);
    if (text[length] == '.') length += 1 + strspn(text + length + 1, kWidth);
    length += strspn(text + length, kSizes);
    return text[length] != '\0' && strchr(kLetters, text[length]) != nullptr ? length + 1 : 0;
}

// An argument as a format gives it that has nothing to convert: "%%" is "%", a conversion is
// nothing. Null when there is no memory.
Heap<char> expand_path(const char* argument) {
    Heap<char> path(static_cast<char*>(malloc(strlen(argument) + 1)));
    if (!path) return path;
    char* end = path.get();
    while (*argument != '\0') {
        bool percent = argument[0] == '%';
        bool doubled = percent && argument[1] == '%';
        size_t conversion = percent && !doubled ? conversion_length(argument) : 0;
        if (conversion == 0) *end++ = *argument;
        argument += conversion != 0 ? conversion : doubled ? 2 : 1;
    }
    *end = '\0';
    return path;
}

// The ports file to use, or null. `requested` is null without --config.
const char* choose_ports_file(const char* requested) {
    if (requested != nullptr && strlen(requested) >= 2) {
        if (IsFileExist(requested) != 0) return strlen(requested) <= kLongestPath ? requested : nullptr;
        puts("Requested config file is not exist! Using default config ... ");
    }
    if (IsFileExist(files::kServicePorts) != 0) return files::kServicePorts;
    puts("Default config file is not exist!");
    return nullptr;
}

void start(const char* requested) {
    const char* path = choose_ports_file(requested);
    if (path == nullptr) {
        puts("Can't find valid config file!");
        return;
    }
    Descriptor file = open_for_reading(path);
    if (!file) {
        printf("Can't open file(%s)\n", path);
        return;
    }
    apply_ports_file(file.number);
}

// The short options keep their letters; -c has no meaning.
enum Option : int { kNone, kHelp = 'h', kVersion = 'v', kStart = 256, kStop, kConfig, kDefaultConfig, kPortsList };

constexpr char kShortOptions[] = "hvc:";

constexpr struct option kLongOptions[] = {
    {"start",      no_argument,       nullptr, kStart        },
    {"stop",       no_argument,       nullptr, kStop         },
    {"restart",    no_argument,       nullptr, kStart        },
    {"config",     required_argument, nullptr, kConfig       },
    {"def_config", no_argument,       nullptr, kDefaultConfig},
    {"ports_list", no_argument,       nullptr, kPortsList    },
    {"version",    no_argument,       nullptr, kVersion      },
    {"help",       no_argument,       nullptr, kHelp         },
    {nullptr,      0,                 nullptr, 0             },
};

}  // namespace

int LibQuorvelBin_FirewallEntry(int argc, char** argv) {
    if (argument_count(argc, argv) < 2) return show_usage();
    OptionVector vector(argc, argv);
    int operation = kNone;
    Heap<char> requested;
    for (int option;
         (option = getopt_long(vector.count, vector.arguments, kShortOptions, kLongOptions, nullptr)) != -1;) {
        if (option == kDefaultConfig) return write_default_file();
        if (option == kPortsList) return list_ports();
        if (option == kVersion) return show_version();
        if (option == kHelp) return show_usage();
        if (option == kStart || option == kStop) operation = option;
        if (option != kConfig) continue;
        requested = expand_path(optarg);
        if (!requested) return -1;
    }
    if (operation == kNone) return 0;
    flush_rules();
    if (operation == kStart) start(requested.get());
    return 0;
}
