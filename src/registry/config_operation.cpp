// Reading, writing and deleting the entry that the configuration buffers name.
#include <stdio.h>
#include <string.h>

#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/line_reader.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/registry.h"
#include "registry/config_buffers.h"
#include "registry/key_notation.h"

namespace quorvel {

char scKeyPath[kRegistryText];
char scKeyName[kRegistryText];
char scKeyRegVal[kRegistryText];
char pscSrc[kRegistryText];

}  // namespace quorvel

using namespace quorvel;

namespace {

constexpr char kFunction[] = "LibQuorvelBin_ConfigOperation";
// A dotted form is at most one character longer than its path; in place it comes behind a component.
constexpr size_t kDottedText = 2 * kRegistryText;

int reject_key(const char* name) {
    char dotted[kDottedText] = "";
    append_dotted(dotted, sizeof dotted, scKeyPath);
    printf("%s%s is not a valid registory key.\n", name, dotted);
    trace(kTrace, "scKeyPathTmp=%s\n", dotted);
    return -1;
}

void print_line(std::string_view line) {
    std::string_view name(line.data(), strnlen(line.data(), line.size()));
    if (name.ends_with('\n')) name.remove_suffix(1);
    std::string_view rest;
    size_t equals = name.find('=');
    if (equals != std::string_view::npos) {
        rest = name;
        rest.remove_prefix(equals + 1);
        name.remove_suffix(name.size() - equals);
    }
    printf("\t\t%.*s=%.*s\n", static_cast<int>(name.size()), name.data(), static_cast<int>(rest.size()), rest.data());
}

int list_file() {
    trace(kTrace, "file read routine\n");
    Text<kRegistryText> path("%s/%s", scKeyPath, scKeyName);
    copy_text(scKeyPath, sizeof scKeyPath, path.c_str());
    if (path.cut || IsFileExist(scKeyPath) == 0) {
        printf("%s is not a file!\n", scKeyPath);
        return reject_key("");
    }
    Descriptor file = open_for_reading(scKeyPath);
    if (!file) {
        printf("%s is not exist!\n", scKeyPath);
        return reject_key("");
    }
    char dotted[kDottedText] = "";
    append_dotted(dotted, sizeof dotted, scKeyPath);
    printf("\t%s\n\t{\n", dotted);
    LineReader reader(file.number, kReaderPiece);
    for (std::string_view line; !(line = next_piece(reader)).empty();)
        print_line(line);
    puts("\t}");
    return 0;
}

int read_entry() {
    trace(kTrace, "%s:CMD_READ scKeyPath=%s\n", kFunction, scKeyPath);
    if (IsFileExist(scKeyPath) != 0) {
        if (get_StringbyKey(scKeyPath, scKeyName, scKeyRegVal, sizeof scKeyRegVal) == nullptr) return -1;
        puts(scKeyRegVal);
        return 0;
    }
    return IsDirExist(scKeyPath) != 0 ? list_file() : reject_key(scKeyName);
}

void announce_new_entry() {
    char present[kRegistryText] = "";
    if (get_StringbyKey(scKeyPath, scKeyName, present, sizeof present) != nullptr) return;
    char place[kDottedText];
    copy_text(place, sizeof place, scKeyPath);
    append_dotted_in_place(place, sizeof place);
    printf("%s%s is not exist in registory. newly add it.\n", scKeyName, place);
}

int write_entry() {
    trace(kTrace, "%s : CMD_WRITE\n", kFunction);
    trace(kTrace, "%s : scKeyPath = %s\n", kFunction, scKeyPath);
    trace(kTrace, "%s : scKeyName = %s\n", kFunction, scKeyName);
    if (IsFileExist(scKeyPath) == 0) return reject_key(scKeyName);
    announce_new_entry();
    if (set_StringbyKey(scKeyPath, scKeyName, scKeyRegVal) != 0) return -1;
    return read_entry();
}

int delete_entry() {
    trace(kTrace, "%s:CMD_WRITE\n", kFunction);
    if (IsFileExist(scKeyPath) == 0) return reject_key(scKeyName);
    return del_StringbyKey(scKeyPath, scKeyName, scKeyRegVal) == 0 ? 0 : -1;
}

}  // namespace

int LibQuorvelBin_ConfigOperation(int operation) {
    trace(kTrace, "%s\n", __func__);
    switch (operation) {
        case kConfigRead:
            return read_entry();
        case kConfigWrite:
            return write_entry();
        case kConfigDelete:
            return delete_entry();
        default:
            trace(kTrace, "%s:default\n", __func__);
            return -1;
    }
}
