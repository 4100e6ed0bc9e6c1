// Files that only the unit they were written on can read: the pass phrase is its hardware address.
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/shell.h"
#include "foundation/text.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

constexpr int kExitedWithOne = 256;  // a wait status

using PassPhrase = Text<18>;
using Command = Text<256>;

// Wipes a secret at the end of its scope, whichever way that is left.
template <typename Secret>
struct Wipe {
    explicit Wipe(Secret& wiped) : secret(wiped) {}
    ~Wipe() { explicit_bzero(&secret, sizeof secret); }
    Wipe(const Wipe&) = delete;
    Wipe& operator=(const Wipe&) = delete;

    Secret& secret;
};

int read_pass_phrase(const char* ifname, PassPhrase& phrase) {
    uint8_t mac[6];
    Wipe wipe(mac);
    int result = Netdev_GetHwAddr(ifname, mac);
    if (result != -1) {
        phrase.append("%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
    }
    return result;
}

// A cut command is not run: its last word, a file to be written, would be another one.
int run_keyed(const Command& command) {
    return command.cut || run_command(command.c_str()) == kExitedWithOne ? 1 : 0;
}

}  // namespace

int LibQuorvelBin_SetEncryptionMacAddressNicFile(const char* ifname, const char* path) {
    PassPhrase phrase;
    Wipe wipe_phrase(phrase);
    if (path == nullptr || read_pass_phrase(ifname, phrase) == -1) return -1;
    ShellWord file(path);
    Command command("%s enc -e -aes-256-cbc -in %s -out %s.1 -pass pass:%s && /bin/mv %s.1 %s", files::kOpensslTool,
                    file.c_str(), file.c_str(), phrase.c_str(), file.c_str(), file.c_str());
    Wipe wipe_command(command);
    return run_keyed(command);
}

int LibQuorvelBin_RecoveryEncryptionMacAddressNicFile(const char* ifname, const char* path) {
    PassPhrase phrase;
    Wipe wipe_phrase(phrase);
    if (path == nullptr || read_pass_phrase(ifname, phrase) == -1) return -1;
    Command command("%s enc -d -aes-256-cbc -in %s -pass pass:%s", files::kOpensslTool, ShellWord(path).c_str(),
                    phrase.c_str());
    Wipe wipe_command(command);
    return run_keyed(command);
}
