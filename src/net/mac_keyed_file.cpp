// Files that only the unit they were written on can read: the pass phrase is its hardware address.
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/child.h"
#include "foundation/failure.h"
#include "foundation/mac_text.h"
#include "foundation/replacement.h"
#include "foundation/shell.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

constexpr int kExitedWithOne = 256;  // a wait status

using PassPhrase = MacText;
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

// Written where its owner wipes it.
[[nodiscard]] int read_pass_phrase(const char* ifname, PassPhrase& phrase) {
    uint8_t mac[6];
    Wipe wipe(mac);
    int result = Netdev_GetHwAddr(ifname, mac);
    if (result != -1) add_mac_text(phrase, mac, Letters::capital);
    return result;
}

// The interface's result for a command's wait status; errno tells why it did not do its work.
int result_of(int status) {
    if (status > 0) errno = could_not_execute(status) ? ENOPKG : EIO;
    return status == kExitedWithOne ? 1 : 0;
}

// The file's place is taken by what stands beside it: made before anybody else can, for its owner's eyes only, and
// given mode and owner of the old file when it is whole.
[[nodiscard]] int run_replacing(const Command& command, const char* path) {
    Text<256> beside("%s.1", path);
    struct stat replaced;
    bool there = stat(path, &replaced) == 0;
    // The command would go on without this process: the file would be its owner's alone, and whoever writes it next
    // would have what is half his own moved into its place.
    HeldSignals held;
    Descriptor made = open_replacement(beside);
    if (!made) return 1;
    int status = run_command(command);
    if (status == 0 && there) give_mode_and_owner(made.number, &replaced);
    if (status != 0) (void)unlink(beside.c_str());
    return result_of(status);
}

}  // namespace

int LibQuorvelBin_SetEncryptionMacAddressNicFile(const char* ifname, const char* path) {
    PassPhrase phrase;
    Wipe wipe_phrase(phrase);
    if (path == nullptr) return fail(EINVAL);
    if (read_pass_phrase(ifname, phrase) == -1) return -1;
    ShellWord file(path);
    Command command("%s enc -e -aes-256-cbc -in %s -out %s.1 -pass pass:%s && %s %s.1 %s", files::kOpensslTool,
                    file.c_str(), file.c_str(), phrase.c_str(), files::kMoveToolWithPath, file.c_str(), file.c_str());
    Wipe wipe_command(command);
    // A cut command is not run: its last word, a file to be written, would be another one.
    return command.cut ? fail(E2BIG, 1) : run_replacing(command, path);
}

int LibQuorvelBin_RecoveryEncryptionMacAddressNicFile(const char* ifname, const char* path) {
    PassPhrase phrase;
    Wipe wipe_phrase(phrase);
    if (path == nullptr) return fail(EINVAL);
    if (read_pass_phrase(ifname, phrase) == -1) return -1;
    Command command("%s enc -d -aes-256-cbc -in %s -pass pass:%s", files::kOpensslTool, ShellWord(path).c_str(),
                    phrase.c_str());
    Wipe wipe_command(command);
    return command.cut ? fail(E2BIG, 1) : result_of(run_command(command));
}
