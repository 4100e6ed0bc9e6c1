#include "mac_file_commands.h"

#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include "command.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "libquorvel_bin.h"

namespace {

// What openssl puts in front of an enciphered file: a word and a salt, which is another one each time.
struct Beginning {
    char word[8];
    char salt[8];
};

// All zeros for what is no regular file or is shorter.
Beginning beginning_of(const char* path) {
    Beginning beginning = {};
    mode_t type;
    quorvel::Descriptor file = quorvel::open_for_reading(path, type);
    bool read = type == S_IFREG && quorvel::read_fully(file.number, &beginning, sizeof beginning) == sizeof beginning;
    return read ? beginning : Beginning();
}

bool is_enciphered(const Beginning& beginning) {
    return memcmp(beginning.word, "Salted__", sizeof beginning.word) == 0;
}

[[nodiscard]] int fail(char** argv, const char* text) {
    fprintf(stderr, "%s: %s: %s\n", argv[1], argv[3], text);
    return kExitNo;
}

}  // namespace

int run_encrypt_mac_file(int, char** argv) {
    const Beginning before = beginning_of(argv[3]);
    if (LibQuorvelBin_SetEncryptionMacAddressNicFile(argv[2], argv[3]) != 0) return kExitNo;
    const Beginning after = beginning_of(argv[3]);
    bool done = is_enciphered(after) && memcmp(&before, &after, sizeof after) != 0;
    return done ? kExitOk : fail(argv, "not enciphered");
}

int run_decrypt_mac_file(int, char** argv) {
    if (LibQuorvelBin_RecoveryEncryptionMacAddressNicFile(argv[2], argv[3]) != 0) return kExitNo;
    if (access(quorvel::files::kOpensslTool, X_OK) != 0) return fail(argv, "not deciphered: there is no openssl");
    return is_enciphered(beginning_of(argv[3])) ? kExitOk : fail(argv, "no enciphered file");
}
