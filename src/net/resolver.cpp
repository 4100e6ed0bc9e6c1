// Name servers: whether one answers, and which is the n-th.
#include <stdio.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/numbers.h"
#include "foundation/options.h"
#include "foundation/shell.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

constexpr size_t kLineSize = 1024;
// Longer than any line a lookup tool prints, so that no piece ends inside the words looked for.
constexpr size_t kOutputPiece = 8192;

enum class Probe { answered, timed_out, not_run };

struct TwoFields {
    char first[128];
    char second[128];
};

Descriptor open_resolver_settings() {
    Descriptor file;
    if (IsFileExist(files::kResolverSettings) == 0) {
        printf("resover setting file(%s) is not exist!\n", files::kResolverSettings);
        return file;
    }
    file = open_for_reading(files::kResolverSettings);
    if (!file) printf("can't open resover setting file(%s)\n", files::kResolverSettings);
    return file;
}

// The next line that has two fields.
bool next_fields(LineReader& reader, TwoFields& fields) {
    char line[kLineSize];
    while (next_line(reader, line, sizeof line)) {
        if (LibQuorvelBin_GetSpecifiedKey(fields.first, sizeof fields.first, line, " \t", 1) == 0 &&
            LibQuorvelBin_GetSpecifiedKey(fields.second, sizeof fields.second, line, " \t", 2) == 0) {
            return true;
        }
    }
    return false;
}

bool names_server(const TwoFields& fields) {
    return strcmp(fields.first, "nameserver") == 0;
}

Probe run_lookup(const Text<kCommandSize>& command) {
    CommandOutput output(command, kOutputPiece);
    if (!output) return Probe::not_run;
    bool silent = true;
    bool timed_out = false;
    for (std::string_view piece; !(piece = next_piece(output.lines)).empty(); silent = false) {
        if (piece.find("timed out") != std::string_view::npos) timed_out = true;
    }
    // The shell starts in any case; that it found no tool shows in its status only.
    if (could_not_execute(output.finish()) && silent) return Probe::not_run;
    return timed_out ? Probe::timed_out : Probe::answered;
}

bool server_answers(const char* address, int timeout, int retries) {
    printf("Checking reachability to %s ... ", address);
    (void)fflush(stdout);
    Text<kCommandSize> command("nslookup -timeout=%d -retry=%d %s", timeout, retries, ShellWord(address).c_str());
    Probe probe = run_lookup(command);
    if (probe == Probe::not_run) {
        printf("can't execute cmd (%s)\n", command.c_str());
    } else {
        puts(probe == Probe::answered ? "OK" : "NG");
    }
    return probe == Probe::answered;
}

int copy_characters(char* dst, const char* text) {
    // No terminator: the caller's cleared buffer provides it.
    // NOLINTNEXTLINE(bugprone-not-null-terminated-result)
    memcpy(dst, text, strlen(text));
    return 0;
}

}  // namespace

int LibQuorvelBin_IsDNSReachable(int argc, char** argv) {
    int timeout = 3;
    int retries = 2;
    OptionVector vector(argc, argv);
    for (int letter; (letter = getopt(vector.count, vector.arguments, "t:r:")) != -1;) {
        if (letter == 't') timeout = leading_int(optarg);
        if (letter == 'r') retries = leading_int(optarg);
    }
    Descriptor file = open_resolver_settings();
    if (!file) return 0;
    LineReader reader(file.number, kLineSize - 1);
    for (TwoFields fields; next_fields(reader, fields);) {
        if (names_server(fields) && server_answers(fields.second, timeout, retries)) return 1;
    }
    return 0;
}

int LibQuorvelBin_GetDNS(unsigned int n, const void* use_resolver, char* dst) {
    if (dst == nullptr) return -1;
    char server[128] = "";
    char first_port[128] = "";
    Text<32> key("my_dns%u", n);
    KeyRequest requests[] = {
        {key.c_str(),              server,     sizeof server    },
        {"enet_port_1_ip_address", first_port, sizeof first_port}
    };
    read_keys(files::kInfo, requests);
    // The appliance's own name servers count only when its first port has an address setting.
    if (server[0] != '\0' && first_port[0] != '\0') return copy_characters(dst, server);

    if (use_resolver == nullptr) {
        puts("don't check resover setting.");
        return -1;
    }
    Descriptor file = open_resolver_settings();
    if (!file) return -1;
    LineReader reader(file.number, kLineSize - 1);
    TwoFields fields;
    for (unsigned int line = 1; next_fields(reader, fields); line++) {
        if (line == n && names_server(fields)) return copy_characters(dst, fields.second);
    }
    return -1;
}
