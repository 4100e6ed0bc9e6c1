// Reading, writing and deleting the entry that the configuration buffers name.
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/line_reader.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/registry.h"
#include "registry/config_buffers.h"
#include "registry/key_notation.h"

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

// "\t\tNAME=REST\n", which is the line as it stands, with a "=" behind it when it has none.
void print_line(std::string_view line) {
    constexpr size_t kAround = 4;
    char text[kAround + kReaderPiece];
    text[0] = text[1] = '\t';
    size_t length = strnlen(line.data(), line.size());
    if (length > 0 && line[length - 1] == '\n') length--;
    char* end = static_cast<char*>(mempcpy(text + 2, line.data(), length));
    if (memchr(line.data(), '=', length) == nullptr) *end++ = '=';
    *end++ = '\n';
    (void)fwrite(text, 1, static_cast<size_t>(end - text), stdout);
}

int list_file() {
    trace(kTrace, "file read routine\n");
    Text<kRegistryText> path("%s/%s", scKeyPath, scKeyName);
    copy_text(scKeyPath, sizeof scKeyPath, path.c_str());
    // A file is one that could be opened, so that none is left to be reported as "is not exist!".
    mode_t type;
    Descriptor file = open_for_reading(scKeyPath, type);
    if (path.cut || type != S_IFREG) {
        printf("%s is not a file!\n", scKeyPath);
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

// get_StringbyKey from a file that is open.
bool read_value(const Descriptor& file, char (&value)[kRegistryText]) {
    KeyRequest request = {scKeyName, value, sizeof value};
    return is_possible_key(scKeyName) && read_keys(file.number, {&request, 1}) == 1;
}

int read_entry() {
    trace(kTrace, "%s:CMD_READ scKeyPath=%s\n", kFunction, scKeyPath);
    mode_t type;
    Descriptor file = open_for_reading(scKeyPath, type);
    if (type == S_IFDIR) return list_file();
    if (type != S_IFREG) return reject_key(scKeyName);
    if (!read_value(file, scKeyRegVal)) return -1;
    puts(scKeyRegVal);
    return 0;
}

void announce_new_entry(const Descriptor& file) {
    char present[kRegistryText] = "";
    if (read_value(file, present)) return;
    char place[kDottedText];
    copy_text(place, sizeof place, scKeyPath);
    append_dotted_in_place(place, sizeof place);
    printf("%s%s is not exist in registory. newly add it.\n", scKeyName, place);
}

int write_entry() {
    trace(kTrace, "%s : CMD_WRITE\n", kFunction);
    trace(kTrace, "%s : scKeyPath = %s\n", kFunction, scKeyPath);
    trace(kTrace, "%s : scKeyName = %s\n", kFunction, scKeyName);
    {
        mode_t type;
        Descriptor file = open_for_reading(scKeyPath, type);
        if (type != S_IFREG) return reject_key(scKeyName);
        announce_new_entry(file);
    }
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
