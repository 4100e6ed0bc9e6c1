// The firewall command: its options and its texts.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/feature_settings.h"
#include "foundation/files.h"
#include "foundation/open_in_time.h"
#include "foundation/options.h"
#include "foundation/replacement.h"
#include "quorvel/services.h"
#include "services/firewall_rules.h"
#include "services/ports_file.h"

using namespace quorvel;

namespace {

constexpr int kMajorVersion = 0;
constexpr int kMinorVersion = 11;

int print_usage() {
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
    return fail(EINVAL);
}

int print_version() {
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

// The length of the conversion that printf would see at a "%", up to its letter; 0 when it would see none.
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

// An argument as a format gives it that has nothing to convert: "%%" is "%", a conversion is nothing. Null when there
// is no memory.
[[nodiscard]] Heap<char> expand_path(const char* argument) {
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

// Commands that failed, and a start without a ports file, change errno only.
int result_of(bool done) {
    return done ? 0 : fail(EIO, 0);
}

void print_table(const RulePlan& plan) {
    if (plan.asks_port_count) (void)network_port_count();  // for what it says of a missing feature
    fwrite(plan.table.bytes, 1, plan.table.size, stdout);
}

// Whether whoever has the turn gets on with it: many rules take a slow machine longer than a lock is waited for.
bool is_getting_on() {
    constexpr time_t kLongestCommand = 10;
    struct stat status;
    if (stat(files::kFirewallTurn, &status) != 0) return true;  // it has just ended
    const time_t now = time(nullptr);
    return status.st_mtime <= now && now - status.st_mtime <= kLongestCommand;
}

[[nodiscard]] Descriptor take_turn() {
    Descriptor lock = open_replacement(files::kFirewallTurn);
    while (!lock && errno == ETIMEDOUT && is_getting_on())
        lock = open_replacement(files::kFirewallTurn);
    return lock;
}

// Whoever flushes in the middle of another's rules leaves half of them, and who has read a file earlier must not be the
// last to load it. Without a turn, for want of a place or because another gets on no more, the firewall is loaded all
// the same.
struct Turn {
    Descriptor lock = take_turn();

    Turn() = default;
    ~Turn() { end(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    void end() {
        if (lock) (void)unlink(files::kFirewallTurn);
        lock = Descriptor();
    }
};

// What is to be read is read before anything is changed, and nothing is printed before the last rule is in.
int start(const char* requested) {
    Turn turn;
    PortsFile choice = choose_ports_file(requested);
    Descriptor file;
    if (choice.path != nullptr) file = open_in_time(choice.path);
    bool opened = static_cast<bool>(file);
    RulePlan plan;
    if (opened && !read_ports(static_cast<Descriptor&&>(file), plan)) return -1;
    const bool applied = apply_rules(plan, turn.lock);
    turn.end();

    print_choice(choice);
    if (opened) {
        print_table(plan);
    } else if (choice.path != nullptr) {
        printf("Can't open file(%s)\n", choice.path);
    }
    return result_of(applied && opened);
}

int flush_rules() {
    const Turn turn;
    return result_of(apply_rules(RulePlan(), turn.lock));
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
    if (argument_count(argc, argv) < 2) return print_usage();
    OptionVector vector(argc, argv);
    if (!vector) return fail(EINVAL);
    int operation = kNone;
    Heap<char> requested;
    for (int option;
         (option = getopt_long(vector.count, vector.arguments, kShortOptions, kLongOptions, nullptr)) != -1;) {
        if (option == kDefaultConfig) return write_default_ports_file();
        if (option == kPortsList) return list_ports();
        if (option == kVersion) return print_version();
        if (option == kHelp) return print_usage();
        if (option == kStart || option == kStop) operation = option;
        if (option != kConfig) continue;
        requested = expand_path(optarg);
        if (!requested) return -1;
    }
    if (operation == kStart) return start(requested.get());
    return operation == kStop ? flush_rules() : 0;
}
