// Name servers: whether one answers, and which is the n-th.
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <sys/wait.h>

#include <algorithm>
#include <optional>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
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
// Longer than any line that a lookup tool prints, so that no piece ends inside the words looked for.
constexpr size_t kOutputPiece = 8192;

enum class Probe { answered, timed_out, not_run };

struct TwoFields {
    char first[128];
    char second[128];
};

[[nodiscard]] Descriptor open_resolver_settings() {
    errno = 0;
    Descriptor file;
    bool there = IsFileExist(files::kResolverSettings) == 1;
    if (there) file = open_for_reading(files::kResolverSettings);
    if (file) return file;
    int reason = errno != 0 ? errno : EINVAL;
    printf(there ? "can't open resover setting file(%s)\n" : "resover setting file(%s) is not exist!\n",
           files::kResolverSettings);
    errno = reason;
    return Descriptor();
}

// The first two fields of a line that has two.
std::optional<TwoFields> fields_of(const char* line) {
    TwoFields fields;
    if (LibQuorvelBin_GetSpecifiedKey(fields.first, sizeof fields.first, line, " \t", 1) != 0) return {};
    if (LibQuorvelBin_GetSpecifiedKey(fields.second, sizeof fields.second, line, " \t", 2) != 0) return {};
    return fields;
}

bool names_server(const TwoFields& fields) {
    return strcmp(fields.first, "nameserver") == 0;
}

bool was_killed(int wait_status) {
    return WIFSIGNALED(wait_status) && WTERMSIG(wait_status) == SIGKILL;
}

// The shell starts in any case; that it found no tool shows in its status only.
bool was_not_run(int wait_status) {
    return wait_status == -1 || could_not_execute(wait_status);
}

// Seconds, longer than the tool's own waiting may take: for as many servers as it asks, by either protocol. Whoever
// goes on sending it answers to other questions keeps it waiting for its own without end.
unsigned longest_lookup(int timeout, int retries) {
    constexpr int kServers = 3, kUsualSeconds = 5, kMostSeconds = 3600, kMostRetries = 100;
    const int seconds = timeout > 0 ? std::min(timeout, kMostSeconds) : kUsualSeconds;
    return static_cast<unsigned>((kServers + 1) * seconds * (std::clamp(retries, 0, kMostRetries) + 1));
}

Probe run_lookup(const Text<kCommandSize>& command, unsigned longest) {
    CommandOutput output(command, kOutputPiece, longest);
    if (!output) return Probe::not_run;
    bool silent = true;
    bool timed_out = false;
    for (const char* line : output) {
        silent = false;
        if (contains(line, "timed out")) timed_out = true;
    }
    const int status = output.finish();
    if (was_not_run(status) && silent) return Probe::not_run;
    return timed_out || was_killed(status) ? Probe::timed_out : Probe::answered;
}

Probe ask_server(const char* address, int timeout, int retries) {
    printf("Checking reachability to ");
    print_foreign(address);
    printf(" ... ");
    (void)fflush(stdout);  // what cannot be shown must not keep the question from being asked
    static constexpr char kInPlaceOfShell[] = "exec ";
    Text<kCommandSize> command("%s%s -timeout=%d -retry=%d %s", kInPlaceOfShell, files::kLookupTool, timeout, retries,
                               ShellWord(address).c_str());
    Probe probe = run_lookup(command, longest_lookup(timeout, retries));
    if (probe == Probe::not_run) {
        printf("can't execute cmd (");
        print_foreign(command.c_str() + strlen(kInPlaceOfShell));
        puts(")");
    } else {
        puts(probe == Probe::answered ? "OK" : "NG");
    }
    return probe;
}

// 1 at the first name server that answers, 0 when all were asked and none did, -1 when one could not be asked.
int ask_servers(LineFile& settings, int timeout, int retries) {
    int result = 0;
    for (const char* line : settings) {
        std::optional<TwoFields> fields = fields_of(line);
        // What begins with a "-" is no address, but would be an option of the tool.
        if (!fields || !names_server(*fields) || fields->second[0] == '-') continue;
        Probe probe = ask_server(fields->second, timeout, retries);
        if (probe == Probe::answered) return 1;
        if (probe == Probe::not_run) result = -1;
    }
    return result;
}

[[nodiscard]] int copy_characters(char* dst, const char* text) {
    // No terminator: the caller's cleared buffer provides it.
    // NOLINTNEXTLINE(bugprone-not-null-terminated-result)
    memcpy(dst, text, strlen(text));
    return 0;
}

}  // namespace

int LibQuorvelBin_IsDNSReachable(int argc, char** argv) {
    int before = errno;
    int timeout = 3;
    int retries = 2;
    OptionVector vector(argc, argv);
    if (!vector) return fail(EINVAL, 0);
    for (int letter; (letter = getopt(vector.count, vector.arguments, "t:r:")) != -1;) {
        if (letter == 't') timeout = leading_int(optarg);
        if (letter == 'r') retries = leading_int(optarg);
    }
    LineFile settings(open_resolver_settings(), kLineSize - 1);
    if (!settings) return 0;
    int answers = ask_servers(settings, timeout, retries);
    return answers == 1 ? 1 : fail(answers == 0 ? before : ENOPKG, 0);
}

int LibQuorvelBin_GetDNS(unsigned int n, const void* use_resolver, char* dst) {
    if (dst == nullptr) return fail(EINVAL);
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
        return fail(ENODATA);
    }
    LineFile settings(open_resolver_settings(), kLineSize - 1);
    if (!settings) return -1;
    unsigned int count = 0;
    for (const char* line : settings) {
        std::optional<TwoFields> fields = fields_of(line);
        if (fields && ++count == n && names_server(*fields)) return copy_characters(dst, fields->second);
    }
    return fail(ENODATA);
}
