// Reading, writing and deleting an entry.
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include <optional>

#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/line_reader.h"
#include "foundation/open_in_time.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/registry.h"
#include "registry/config_buffers.h"
#include "registry/key_notation.h"

using namespace quorvel;
using namespace std::string_view_literals;

namespace {

constexpr char kFunction[] = "LibQuorvelBin_ConfigOperation";
// Why a path that was opened so is not the regular file that it must be.
int reason_of(mode_t type) {
    return type == 0 ? errno : type == S_IFDIR ? EISDIR : EINVAL;
}

// A dotted form is at most one character longer than its path; in place it comes behind a component.
constexpr size_t kDottedText = 2 * kRegistryText;

int reject_key(const char* name, const char* path, int reason) {
    char dotted[kDottedText] = "";
    append_dotted(dotted, sizeof dotted, path);
    printf("%s%s is not a valid registory key.\n", name, dotted);
    trace(kTrace, "scKeyPathTmp=%s\n", dotted);
    return fail(reason);
}

// "\t\tNAME=REST\n", which is the line as it stands, with a "=" behind it when it has none.
void print_line(const char* line) {
    std::string_view setting(line, strcspn(line, "\n"));
    Text<kReaderPiece + 8> text;
    for (std::string_view part : {"\t\t"sv, setting, setting.find('=') != setting.npos ? "\n"sv : "=\n"sv})
        text.add(part);
    fwrite(text.chars, 1, text.length, stdout);
}

[[nodiscard]] int list_file(ConfigEntry& entry) {
    trace(kTrace, "file read routine\n");
    RegistryText path("%s/%s", entry.path.c_str(), entry.name.c_str());
    entry.path = path;
    // A file is one that could be opened, so that none is left to be reported as "is not exist!".
    mode_t type = 0;
    LineFile file(open_in_time(path, type), kReaderPiece);
    if (type != S_IFREG) {
        int reason = reason_of(type);
        printf("%s is not a file!\n", path.c_str());
        return reject_key("", path.c_str(), reason);
    }
    char dotted[kDottedText] = "";
    append_dotted(dotted, sizeof dotted, path.c_str());
    printf("\t%s\n\t{\n", dotted);
    for (const char* line : file)
        print_line(line);
    puts("\t}");
    return file.reader.failed ? -1 : 0;
}

// get_StringbyKey from a file that is open.
[[nodiscard]] std::optional<RegistryText> read_value(const Descriptor& file, const RegistryText& name) {
    RegistryText value;
    KeyRequest request = {view(name), value.chars, sizeof value.chars};
    if (!is_possible_key(request.key) || read_keys(file.number, {&request, 1}) != 1) return {};
    value.length = strlen(value.chars);
    return value;
}

[[nodiscard]] int read_entry(ConfigEntry& entry) {
    trace(kTrace, "%s:CMD_READ scKeyPath=%s\n", kFunction, entry.path.c_str());
    mode_t type;
    Descriptor file = open_in_time(entry.path, type);
    if (type == S_IFDIR) return list_file(entry);
    if (type != S_IFREG) return reject_key(entry.name.c_str(), entry.path.c_str(), reason_of(type));
    std::optional<RegistryText> value = read_value(file, entry.name);
    if (!value) return fail(ENODATA);
    entry.value = *value;
    puts(value->c_str());
    return 0;
}

void announce_new_entry(const ConfigEntry& entry) {
    char place[kDottedText];
    copy_text(place, sizeof place, view(entry.path));
    append_dotted_in_place(place, sizeof place);
    printf("%s%s is not exist in registory. newly add it.\n", entry.name.c_str(), place);
}

[[nodiscard]] int write_entry(ConfigEntry& entry) {
    trace(kTrace, "%s : CMD_WRITE\n", kFunction);
    trace(kTrace, "%s : scKeyPath = %s\n", kFunction, entry.path.c_str());
    trace(kTrace, "%s : scKeyName = %s\n", kFunction, entry.name.c_str());
    {
        mode_t type;
        Descriptor file = open_in_time(entry.path, type);
        if (type != S_IFREG) return reject_key(entry.name.c_str(), entry.path.c_str(), reason_of(type));
        if (!read_value(file, entry.name)) announce_new_entry(entry);
    }
    if (set_StringbyKey(entry.path.c_str(), entry.name.c_str(), entry.value.c_str()) != 0) return -1;
    return read_entry(entry);
}

[[nodiscard]] int delete_entry(const ConfigEntry& entry) {
    trace(kTrace, "%s:CMD_WRITE\n", kFunction);
    mode_t type;
    (void)open_in_time(entry.path, type);  // one that cannot be read is none
    if (type != S_IFREG) return reject_key(entry.name.c_str(), entry.path.c_str(), reason_of(type));
    return del_StringbyKey(entry.path.c_str(), entry.name.c_str(), "") == 0 ? 0 : -1;
}

[[nodiscard]] int carry_out(ConfigEntry& entry, int operation) {
    switch (operation) {
        case kConfigRead:
            return read_entry(entry);
        case kConfigWrite:
            return write_entry(entry);
        case kConfigDelete:
            return delete_entry(entry);
        default:
            trace(kTrace, "%s:default\n", kFunction);
            return fail(EINVAL);
    }
}

}  // namespace

int LibQuorvelBin_ConfigOperation(int operation) {
    trace(kTrace, "%s\n", __func__);
    ConfigEntry entry = entry_of_buffers();
    int result = carry_out(entry, operation);
    fill_buffers(entry);
    return result;
}
