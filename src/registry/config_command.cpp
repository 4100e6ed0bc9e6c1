// The config helper's command line.
#include <stdio.h>
#include <string.h>

#include <algorithm>

#include "foundation/failure.h"
#include "foundation/options.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/registry.h"
#include "registry/config_buffers.h"
#include "registry/key_notation.h"

using namespace quorvel;

namespace {

constexpr char kFunction[] = "LibQuorvelBin_ConfigHelper";

// An operation is chosen by the length of its word and then by the word's first characters: any word of six that begins
// with "delet" deletes.
struct OperationWord {
    size_t length;
    const char* beginning;
    ConfigOperationCode code;
    int arguments;  // command word, operation, key and value
    const char* trace;
};

constexpr OperationWord kOperations[] = {
    {4, "read",  kConfigRead,   3, "CMD=READ"  },
    {5, "write", kConfigWrite,  4, "CMD=WRITE" },
    {6, "delet", kConfigDelete, 3, "CMD=DELETE"},
};

const OperationWord* find_operation(const char* word) {
    for (const OperationWord& operation : kOperations) {
        if (strlen(word) == operation.length && starts_with(word, operation.beginning)) return &operation;
    }
    return nullptr;
}

void clear_buffers() {
    for (char* buffer : {scKeyPath, scKeyName, scKeyRegVal, pscSrc})
        memset(buffer, '\0', kRegistryText);
}

bool asks_for_usage(OptionVector& vector) {
    // Only in front of the operation: a key or a value may begin with "-".
    for (int option; (option = getopt(vector.count, vector.arguments, "+h")) != -1;) {
        if (option == 'h') return true;
    }
    return false;
}

[[nodiscard]] bool take_key_and_value(const char* key, const char* value) {
    // Half a value must not be stored as if it were the whole.
    if (strlen(value) >= sizeof scKeyRegVal) {
        errno = ENAMETOOLONG;
        return false;
    }
    if (LibQuorvelBin_SeparateRegKeyAndPath(key) != 0) return false;
    copy_text(scKeyRegVal, sizeof scKeyRegVal, value);
    trace(kTrace, "%s : scKeyName=%s\n", kFunction, scKeyName);
    trace(kTrace, "%s : scKeyPath=%s\n", kFunction, scKeyPath);
    trace(kTrace, "%s : scKeyRegVal=%s\n", kFunction, scKeyRegVal);
    return true;
}

}  // namespace

int LibQuorvelBin_ConfigHelperShowUsage(void) {
    puts("Quorvel config_helper command");
    return 0;
}

int LibQuorvelBin_ConfigHelper(int argc, char** argv) {
    clear_buffers();
    int count = std::max(argument_count(argc, argv) - 1, 0);
    {
        OptionVector vector(count, count > 0 ? argv + 1 : nullptr);
        if (!vector) return fail(EINVAL);
        if (asks_for_usage(vector)) return LibQuorvelBin_ConfigHelperShowUsage();
    }
    trace(kTrace, "argc=%d\n", std::max(count - 1, 0));
    if (count < 3) return fail(EINVAL);

    const char* word = argv[2];
    trace(kTrace, "argv[0]=%s\nstrlen(argv[0])=%lu\n", word, static_cast<unsigned long>(strlen(word)));
    const OperationWord* operation = find_operation(word);
    if (operation == nullptr) return LibQuorvelBin_ConfigHelperShowUsage();
    trace(kTrace, "%s\n", operation->trace);
    if (count != operation->arguments) return fail(EINVAL);

    if (!take_key_and_value(argv[3], operation->code == kConfigWrite ? argv[4] : "")) return -1;
    if (LibQuorvelBin_ConfigOperation(operation->code) != 0) return -1;
    if (operation->code != kConfigRead) LibQuorvelBin_Sync();
    return 0;
}
