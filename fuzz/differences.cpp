// Answers of the library beside those of second implementations, which share nothing with it and are as plain as their
// subject allows; a difference aborts.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "libquorvel_bin.h"
#include "surroundings.h"

namespace {

namespace fs = std::filesystem;
using std::string;

string given;

void require(bool holds) {
    if (!holds) abort();
}

// The input's text up to a mark, which goes with it.
string take(char mark) {
    string begin = given.substr(0, given.find(mark));
    given.erase(0, begin.size() + 1);
    return begin;
}

unsigned take_byte() {
    const unsigned byte = given.empty() ? 0 : static_cast<unsigned char>(given[0]);
    given.erase(0, 1);
    return byte;
}

void put(const string& path, const string& text) {
    put_file(path.c_str(), text.data(), text.size());
}

string content_of(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

template <typename Call>
string printed_by(Call call) {
    char* text = nullptr;
    size_t size = 0;
    FILE* const usual = stdout;
    const int32_t level = debug;
    debug = 0;
    stdout = open_memstream(&text, &size);
    call();
    (void)fclose(stdout);
    stdout = usual;
    debug = level;
    string result(text, size);
    free(text);
    return result;
}

// ---- Key=value files ----

struct Setting {
    string key;
    string value;
};

// Lines with their line feed; longer ones in pieces.
std::vector<string> lines(const string& text, size_t longest) {
    std::vector<string> result;
    for (size_t at = 0; at < text.size(); at += result.back().size()) {
        const size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        result.push_back(text.substr(at, std::min(end - at, longest)));
    }
    return result;
}

std::optional<Setting> setting(const string& line, const char* comments) {
    const size_t begin = line.find_first_not_of(" \t");
    const size_t equals = line.find('=');
    if (equals == string::npos || strchr(comments, line[begin]) != nullptr) return std::nullopt;
    const string key = line.substr(begin, equals - begin);
    const string rest = line.substr(equals + 1);
    return Setting{key.substr(0, key.find_first_of(" \t\n\v\f\r")), rest.substr(0, rest.find_last_not_of("\r\n") + 1)};
}

std::optional<string> value_in(const string& text, const string& key) {
    for (const string& line : lines(text, 511)) {
        const auto found = setting(line, "#");
        if (found && found->key == key) return found->value;
    }
    return std::nullopt;
}

// What is left of a file without a key. An overlong line that a piece of went keeps the end it had.
string without(const string& text, const string& key) {
    string result;
    bool begun = false;
    for (const string& line : lines(text, 255)) {
        const auto found = setting(line, "#");
        if (!found || found->key != key) {
            result += line;
        } else if (begun && line.ends_with('\n')) {
            result += '\n';
        }
        begun = !line.ends_with('\n');
    }
    return result;
}

int number_of(const std::optional<string>& value) {
    if (!value) return -1;
    if (value->starts_with("on")) return 1;
    if (value->starts_with("off")) return 0;
    if (strspn(value->c_str(), "0123456789") == 0) return -1;
    return static_cast<int>(strtol(value->c_str(), nullptr, 10));
}

// An input is a size, a line with a key, and the file.
void read_settings() {
    const size_t size = 1 + take_byte() * 3;
    const string key = take('\n');
    put("/etc/nas_feature", given);
    const auto value = value_in(given, key);
    std::vector<char> expected(size, 'x');
    std::vector<char> answer(size, 'x');
    if (value) strncpy(expected.data(), value->c_str(), size - 1);
    char* result = get_StringbyKey("/etc/nas_feature", key.c_str(), answer.data(), size);
    require(result == (value ? answer.data() : nullptr) && answer == expected);
    const int number = number_of(value);
    require(LibQuorvelBin_GetConfOnOffValInIntByKey(key.c_str()) == number);
    int found = 0;
    const string text = printed_by([&] { found = LibQuorvelBin_GetConfValByKey(key.c_str()); });
    require(found == (number == -1 && value ? 0 : number));
    require(text == (number != -1 ? std::to_string(number) : value.value_or("wrong feature name")) + "\n");
}

// An input is a line with a key, one with its value, and the file.
void write_settings() {
    constexpr char kPath[] = "/etc/tevra/info";
    const string key = take('\n').substr(0, 100);
    const string value = take('\n').substr(0, 100);
    string expected = without(given, key);
    run_commands();
    put(kPath, given);
    require(del_StringbyKey(kPath, key.c_str(), nullptr) == 0 && content_of(kPath) == expected);
    put(kPath, given);
    if (!expected.empty() && !expected.ends_with('\n')) expected += '\n';
    expected += key + "=" + value + "\n";
    require(set_StringbyKey(kPath, key.c_str(), value.c_str()) == 0 && content_of(kPath) == expected);
}

// ---- Disk naming: the slot files ----

struct Row {
    int type = DISK_PATH_INTERNAL;
    int slot = 0;
    string path;
    string scsi_id;
    int port1 = 0;
    int port2 = 0;
    string word;
    bool operator==(const Row&) const = default;
};
using Rows = std::vector<Row>;  // empty where the library has no set

Rows rows_of(const struct disk_path* set) {
    const auto text = [](const char* field) { return string(field != nullptr ? field : ""); };
    Rows rows;
    for (const struct disk_path* row = set; row != nullptr && row->type != DISK_PATH_END; row++) {
        rows.push_back({row->type, row->slot, text(row->path), text(row->scsi_id), row->usb_port1, row->usb_port2,
                        text(row->diskname)});
    }
    disk_path_free(set);
    return rows;
}

// The number-th part of a text, counted from 1 over those that are not empty; empty when it is too long.
string part(const string& text, char separator, int number, size_t longest) {
    size_t begin = 0;
    size_t end = 0;
    while (number-- > 0) {
        begin = text.find_first_not_of(separator, end);
        if (begin == string::npos) return "";
        end = std::min(text.find(separator, begin), text.size());
    }
    return end - begin <= longest ? text.substr(begin, end - begin) : "";
}

string word_in(const string& value, int field) {
    char word[128] = "";
    (void)sscanf(part(value, ',', field, 127).c_str(), "%127s", word);
    return word;
}

int number_in(const string& value, int field) {
    int number = 0;
    (void)sscanf(part(value, ',', field, 127).c_str(), "%d", &number);
    return number;
}

void take_word(const string& value, string& word) {
    char text[80] = "";
    if (sscanf(value.c_str(), "%79s", text) == 1) word = text;
}

// Fills a row from its slot's field on.
void take_fields(const string& value, int slot, int type, Row& row) {
    row.type = type;
    row.slot = number_in(value, slot);
    row.path = word_in(value, slot + 1);
    if (type == DISK_PATH_INTERNAL) row.scsi_id = word_in(value, slot + 2);
    if (type != DISK_PATH_USB) return;
    row.port1 = number_in(value, slot + 2);
    row.port2 = number_in(value, slot + 3);
}

bool valid(const Row& row) {
    if (row.slot < 1 || row.path.empty()) return false;
    return row.type == DISK_PATH_USB ? row.port1 > 0 : row.type == DISK_PATH_BOOT || !row.scsi_id.empty();
}

// Kinds of rows, and the settings of their words behind that of an extension slot.
struct Kind {
    int type;
    const char* word;
};
using Kinds = std::map<string, Kind>;
const Kinds kOrderKinds = {
    {"HDD_INTERNAL", {DISK_PATH_INTERNAL, "HDD_DISKNAME"}},
    {"HDD_USB",      {DISK_PATH_USB, "USB_DISKNAME"}     },
    {"HDD_BOOT",     {DISK_PATH_BOOT, nullptr}           }
};
const Kinds kExtensionKinds = {
    {"SATA", {DISK_PATH_INTERNAL, "_SATADISKNAME"}},
    {"SCSI", {DISK_PATH_INTERNAL, "_SATADISKNAME"}},
    {"USB",  {DISK_PATH_USB, "_USBDISKNAME"}      }
};

// What a slot file says, without the sections of other cards than this: vendor and device, 0 for none.
Rows slots(const string& text, bool extension, unsigned card) {
    const Kinds& kinds = extension ? kExtensionKinds : kOrderKinds;
    Rows rows;
    std::map<string, string> words;
    bool other_card = false;
    for (const string& line : lines(text, 511)) {
        unsigned vendor = 0;
        unsigned device = 0;
        if (sscanf(line.c_str(), "[%4x:%4x]", &vendor, &device) == 2) {
            other_card = card != 0 && (vendor != card >> 16 || device != (card & 0xffff));
            continue;
        }
        const auto found = setting(line, ";#");
        if (!found) continue;
        take_word(found->value, words[found->key]);
        const auto kind = kinds.find(extension ? word_in(found->value, 1) : found->key);
        int number = 0;
        if (extension ? other_card || found->key.find("extslot") == string::npos : kind == kinds.end()) continue;
        if (extension && (sscanf(found->key.c_str(), "extslot%d", &number) != 1 || number < 1 || number > 4)) return {};
        const string slot = extension ? "EXTSLOT" + std::to_string(number) : "";
        Row& row = rows.emplace_back();
        if (kind == kinds.end()) {
            row.slot = number_in(found->value, 2);
            row.path = word_in(found->value, 3);
            continue;
        }
        take_fields(found->value, extension ? 2 : 1, kind->second.type, row);
        if (kind->second.word != nullptr) row.word = words[slot + kind->second.word];
        if (!valid(row)) return {};
    }
    return rows;
}

// ---- Disk naming: the links ----

struct Machine {
    Rows set;
    Rows extension;
    bool new_sysfs;
};

// kNever for a row that is looked at again and again.
enum Answer { kNone, kFound, kNever };

string link_at(const string& path) {
    std::error_code error;
    return fs::read_symlink(path, error).string();
}

// The port of a USB row below the bus that stands behind the row's path; empty when no bus stands there.
string port_place(const Row& row, const string& path) {
    const string component = part(path.substr(path.find(row.path) + row.path.size()), '/', 1, 31);
    int bus = 0;
    if (sscanf(component.c_str(), "usb%d", &bus) != 1) return "";
    const string port = std::to_string(bus) + "-" + std::to_string(row.port1);
    const string place = "/" + component + "/" + port + "/";
    return row.port2 == -1 ? place : place + port + "." + std::to_string(row.port2) + "/";
}

bool lies_in(const string& path, const Row& row) {
    return !row.path.empty() && path.find(row.path) != string::npos;
}

string name_of(const Row& row) {
    constexpr const char* kWords[] = {"disk", "usbdisk", "bootdisk"};
    return (row.word.empty() ? kWords[row.type] : row.word) + std::to_string(row.slot);
}

Answer match(const Rows& rows, const string& link, const string& path, string& name) {
    const bool usb = path.find("usb") != string::npos;
    for (const Row& row : rows) {
        if (!lies_in(path, row) || (row.type != DISK_PATH_BOOT && usb != (row.type == DISK_PATH_USB))) continue;
        const string place = row.type == DISK_PATH_USB ? port_place(row, path) : "/";
        if (place.empty()) return kNever;
        if (link.find(place) == string::npos) continue;
        name = name_of(row);
        return kFound;
    }
    return kNone;
}

// The first device of a row; failed when a link in front of it cannot be read.
string device_of(const Row& row, bool& failed) {
    for (const auto& item : fs::directory_iterator("/sys/block")) {
        const string entry = item.path().filename();
        if (entry.starts_with('.') || entry.find("sd") == string::npos) continue;
        const string link = link_at(item.path());
        failed = link.empty();
        if (failed) break;
        if (!lies_in(link, row)) continue;
        const string place = row.type == DISK_PATH_USB ? port_place(row, link) : "/";
        if (!place.empty() && link.find(place) != string::npos) return entry;
    }
    return "";
}

string match_back(const Rows& rows, const string& name, bool& failed) {
    const int boot = name.find("bootdisk") != string::npos ? DISK_PATH_BOOT : DISK_PATH_INTERNAL;
    const int kind = name.find("usb") != string::npos ? DISK_PATH_USB : boot;
    const size_t at = name.find("disk");
    failed = at == string::npos;
    string device;
    for (size_t i = 0; i < rows.size() && !failed && device.empty(); i++) {
        const Row& row = rows[i];
        if (row.type != kind) continue;
        if (row.word.empty() ? row.slot != atoi(name.c_str() + at + 4) : name_of(row) != name) continue;
        device = device_of(row, failed);
    }
    return device;
}

Answer disk_name(const Machine& machine, const string& device, string& name) {
    const string place = "/sys/block/" + device;
    const string link = link_at(machine.new_sysfs ? place : place + "/device");
    if (link.empty()) return kNone;
    const string path = machine.new_sysfs ? "/sys/block/" + link : place + "/" + link;
    const Answer answer = match(machine.set, link, path, name);
    return answer != kNone ? answer : match(machine.extension, link, path, name);
}

string device_name(const Machine& machine, const string& disk) {
    bool failed = false;
    const string device = match_back(machine.set, disk, failed);
    return failed || !device.empty() ? device : match_back(machine.extension, disk, failed);
}

// Both directions for one name, with or without "/dev/"; a logical name has no room for more than 31 characters.
void judge_name(const Machine& machine, const string& name) {
    char answer[256];
    const size_t at = name.find("dev/");
    const string prefix = at == string::npos ? "" : "/dev/";
    string plain = name.substr(at == string::npos ? 0 : at + 4);
    plain = plain.substr(0, plain.find('\n'));
    const bool possible = name.size() >= 2 && plain.find('/') == string::npos && !plain.empty();
    string expected;
    const Answer known = possible ? disk_name(machine, plain, expected) : kNone;
    if (known != kNever) {
        const bool found = LibQuorvelBin_GetDisknameFromDevname(name.c_str(), answer, sizeof answer) == 0;
        require(found == (known == kFound) && (!found || prefix + expected == answer));
    }
    if (plain.size() > 31) return;
    expected = possible ? device_name(machine, plain) : "";
    const bool found = LibQuorvelBin_GetDevnameFromDiskname(name.c_str(), answer, sizeof answer) == 0;
    require(found != expected.empty() && (!found || prefix + expected == answer));
}

// A disk where a row says, or a port beside it.
string link_to(const Row& row, unsigned ports, unsigned host, const string& name) {
    const string bus = std::to_string(host);
    string link = "../devices/pci0000:00/" + row.path;
    if ((row.type == DISK_PATH_USB) != (ports >= 0x80)) {
        const string port = bus + "-" + std::to_string(row.port1 + (ports % 4 == 3 ? 1L : 0L));
        link += "/usb" + bus + "/" + port;
        if ((row.port2 == -1) == (ports % 64 >= 48)) {
            link += "/" + port + "." + std::to_string(row.port2 + (ports / 4 % 4 == 3 ? 1L : 0L));
        }
    }
    return link + "/host" + bus + "/block/" + name;
}

// An input is the slot files, a name, kernel, board and card, and six disks.
void judge_machine() {
    const string order = take('\x1d');
    const string extension = take('\x1d');
    std::vector<string> names = {take('\x1d'), "disk1", "usbdisk2", "bootdisk1"};
    constexpr unsigned kCards[] = {0, 0x19120014, 0x19120015, 0x10330194};
    const unsigned kind = take_byte();
    const unsigned card = kCards[kind >> 4 & 3];
    char list[64];
    snprintf(list, sizeof list, "0000\t80862922\t1f\n0008\t%08x\t10\n", card);
    put("/proc/bus/pci/devices", list);
    put("/etc/diskpath.conf", order);
    put("/etc/extslot.conf", extension);
    Machine machine = {slots(order, false, 0), slots(extension, true, card), kind % 4 != 3};
    require(rows_of(get_DiskOrderConfig()) == machine.set && rows_of(get_ExtSlotConfig()) == machine.extension);

    (void)fs::remove_all("/sys/class/borel");
    if ((kind & 4) != 0) (void)fs::create_directories("/sys/class/borel");
    if (machine.set.empty() && (kind & 4) != 0) machine.set = rows_of(borel_disk_set);
    if (machine.set.empty()) return;  // rules hold there
    constexpr const char* kKernels[] = {"3.4.69\n", "2.6.31.8\n", "6.1.0-13-amd64\n", "2.6.31.7\n"};
    put("/proc/sys/kernel/osrelease", kKernels[kind % 4]);
    Rows rows = machine.set;
    rows.insert(rows.end(), machine.extension.begin(), machine.extension.end());
    (void)fs::remove_all("/sys/block");
    (void)fs::create_directories("/sys/block");
    if ((kind & 8) != 0) put("/sys/block/sdz", "");
    for (char letter = 'a'; !given.empty() && letter < 'g'; letter++) {
        const Row& row = rows[take_byte() % rows.size()];
        const string device = string("sd") + letter;
        const unsigned ports = take_byte();
        const string place = "/sys/block/" + device + (machine.new_sysfs ? "" : "/device");
        (void)fs::create_directories(fs::path(place).parent_path());
        fs::create_symlink(link_to(row, ports, take_byte() % 20, device), place);
        names.insert(names.end(), {device, "/dev/" + device, name_of(row), "/dev/" + name_of(row)});
    }
    for (const string& each : names)
        judge_name(machine, each);
}

// ---- Front panel ----

// How many disks each group has, and the line for it. Groups are single, standby, broken and removed disks and the
// members of array 1 (p), of array 2 (q) and of the one with more of them (k); in a line such a letter is the group's
// next slot, and x, y and z are the labels of p, q and k.
struct Line {
    const char* groups;
    const char* text;
};

// clang-format off
constexpr Line kTwoDisks[] = {
    {"ss", "HD    1,2           SINGLE"},       {"sr", "HD  s  : SINGLE     r  : REMOVE"},
    {"sb", "HD  s  : SINGLE     b  : BROKEN"},  {"pp", "HD 1-2 : x"},
    {"pb", "HD  p  : x      b  : BROKEN"},      {"pr", "HD  p  : x      r  : REMOVE"},
};
constexpr Line kFourDisks[] = {
    {"ssss", "HD 1,2,3,4         SINGLE"},        {"sssr", "HD s,s,s: SINGLE     r  : REMOVE"},
    {"ssrr", "HD s,s  : SINGLE   r,r  : REMOVE"}, {"srrr", "HD  s   : SINGLE  r,r,r : REMOVE"},
    {"ssst", "HD s,s,s: SINGLE     t  :STANDBY"}, {"sstt", "HD s,s  : SINGLE   t,t  :STANDBY"},
    {"sttt", "HD  s   : SINGLE  t,t,t :STANDBY"}, {"sssb", "HD s,s,s: SINGLE     b  : BROKEN"},
    {"ssbb", "HD s,s  : SINGLE   b,b  : BROKEN"}, {"sbbb", "HD  s   : SINGLE  b,b,b : BROKEN"},
    {"pppp", "HD 1-2-3-4          x"},            {"qqqq", "HD 1-2-3-4          y"},
    {"ppqq", "HD p-p : x    q-q : y"},            {"ppq",  "HD p-p : x     q  : y"},
    {"pq",   "HD  p  : x     q  : y"},            {"pqq",  "HD  p  : x    q-q : y"},
    {"kkks", "HD k-k-k: z     s  : SINGLE"},      {"kkkt", "HD k-k-k: z     t  :STANDBY"},
    {"kkkr", "HD k-k-k: z     r  : REMOVE"},      {"kkkb", "HD k-k-k: z     b  : BROKEN"},
    {"kkss", "HD k-k : z    s,s : SINGLE"},       {"kktt", "HD k-k : z    t,t :STANDBY"},
    {"kkrr", "HD k-k : z    r,r : REMOVE"},       {"kkbb", "HD k-k : z    b,b : BROKEN"},
    {"kkst", "HD k-k : z sSINGLE tSTANDBY"},      {"kksr", "HD k-k : z sSINGLE rREMOVE"},
    {"kksb", "HD k-k : z sSINGLE bBROKEN"},       {"kktr", "HD k-k : z tSTANDBY rREMOVE"},
    {"kktb", "HD k-k : z tSTANDBY bBROKEN"},      {"kkrb", "HD k-k : z rREMOVE  bBROKEN"},
    {"kbss", "HD  p  : x    s,s : SINGLE"},       {"kbtt", "HD  p  : x    t,t : STANDBY"},
    {"kbrr", "HD  p  : x    r,r : REMOVE"},       {"kbst", "HD  k  : z sSINGLE tSTANDBY"},
    {"kbsr", "HD  k  : z sSINGLE rREMOVE"},       {"kbtr", "HD  k  : z tSTANDBY rREMOVE"},
};
// The group or label that a code stands for.
constexpr struct {
    int code;
    char group;
    const char* label;
} kStates[] = {
    {0x0, 's', ""},         {0x1, 't', ""},         {0x2, 'b', ""},         {0x3, 'r', ""},
    {0x11, 't', ""},        {0x12, 'b', ""},        {0x13, 'r', ""},        {0x101, 'p', ""},
    {0x102, 'q', ""},       {0xfff, '-', ""},       {0xffff, '-', ""},      {0x1000, '-', "RAID0 "},
    {0x1001, '-', "RAID1 "},{0x1005, '-', "RAID5 "},{0x1006, '-', "RAID6 "},{0x1010, '-', "RAID10"},
    {0x1020, '-', "JBOD  "},
};
// clang-format on

bool fits(const Line& line, std::map<char, string>& groups) {
    const string wanted = line.groups;
    return std::all_of(wanted.begin(), wanted.end(), [&](char group) {
        return static_cast<size_t>(std::count(wanted.begin(), wanted.end(), group)) == groups[group].size();
    });
}

string filled(const Line& line, std::map<char, string> groups) {
    string result;
    for (const char* c = line.text; *c != '\0'; c++) {
        if (strchr("xyz", *c) != nullptr) {
            result += groups[*c];
        } else if (strchr("stbrpqk", *c) == nullptr) {
            result += *c;
        } else {
            result += groups[*c].empty() ? '0' : groups[*c][0];
            groups[*c].erase(0, 1);
        }
    }
    return result;
}

// Disks and arrays are rows of kStates.
string panel(unsigned disk_count, const size_t (&disks)[4], const size_t (&arrays)[2]) {
    if (disk_count != 2 && disk_count != 4) return "Unsupported system disk number\n";
    std::map<char, string> groups;
    for (unsigned i = 0; i < disk_count; i++)
        groups[kStates[disks[i]].group] += static_cast<char>('1' + i);
    groups['x'] = kStates[arrays[0]].label;
    groups['y'] = kStates[arrays[1]].label;
    if (disk_count == 2) groups['x'] = kStates[arrays[0]].code <= 0x1001 ? groups['x'].substr(0, 5) : "";
    const bool first = groups['p'].size() >= groups['q'].size();
    groups['k'] = groups[first ? 'p' : 'q'];
    groups['z'] = groups[first ? 'x' : 'y'];
    const Line* line = disk_count == 2 ? std::begin(kTwoDisks) : std::begin(kFourDisks);
    const Line* end = disk_count == 2 ? std::end(kTwoDisks) : std::end(kFourDisks);
    while (line != end && !fits(*line, groups))
        line++;
    return line == end ? "HD Unknown\n" : filled(*line, groups);
}

constexpr unsigned kDiskCounts[] = {4, 2, 4, 3};

// An input is a model and the states of disks and arrays.
void judge_panel() {
    const unsigned disk_count = kDiskCounts[take_byte() % std::size(kDiskCounts)];
    size_t disks[4];
    size_t arrays[2];
    put("/etc/nas_feature", "MAX_DISK_NUM=" + std::to_string(disk_count) + "\n");
    for (int i = 0; i < 4; i++)
        disk_mode_tbl[i].code = kStates[disks[i] = take_byte() % std::size(kStates)].code;
    for (int i = 0; i < 2; i++)
        array_mode_tbl[i].code = kStates[arrays[i] = take_byte() % std::size(kStates)].code;
    require(printed_by(LibQuorvelBin_PrintLcdString) == panel(disk_count, disks, arrays));
}

}  // namespace

// clang-format off
const FuzzTarget kTargets[] = {
    {"settings",         nullptr, read_settings },
    {"settings_written", nullptr, write_settings},
    {"machine_names",    nullptr, judge_machine },
    {"panel",            nullptr, judge_panel   },
    {nullptr, nullptr, nullptr},
};
// clang-format on

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    given.assign(reinterpret_cast<const char*>(data), size);
    (void)std::erase(given, '\0');  // no text holds one
    chosen_target().run();
    return 0;
}
