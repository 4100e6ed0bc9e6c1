// The front of the appliance as an SVG picture: bays, each in the colour of its array and with its state in words, USB
// ports, network ports and the display.
#include <string.h>

#include <algorithm>

#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/forms.h"
#include "report/rooms.h"
#include "report/xml.h"

namespace report {

namespace {

using quorvel::Text;

// In pixels, as wide as the picture is drawn by itself.
constexpr int kWidth = 720;
constexpr int kMargin = 20;
constexpr int kGap = 10;
constexpr int kBayHeight = 108;
constexpr int kPortHeight = 58;
constexpr int kLineHeight = 17;
constexpr int kMostColumns = 4;
constexpr int kPixelsAColumn = 8;  // of the text

// Light enough for black text. Arrays take them in turn; a disk that is in none is white.
constexpr const char* kColours[] = {"#cfe3ff", "#d5f0cf", "#ffe3b8", "#ead6f5", "#ffd9d4", "#d3f1f0"};
constexpr char kPlain[] = "#ffffff";
constexpr char kEmpty[] = "#e4e4e4";

struct Box {
    int x, y, width, height;
    const char* fill;
    const char* edge = "#444444";
    bool dashed = false;
};

struct Picture {
    FILE* stream;
    int y = kMargin;
};

// A box with its lines of text; screen readers get them as one label.
void print_box(const Picture& picture, const Box& box, std::initializer_list<const char*> lines) {
    FILE* stream = picture.stream;
    fputs("<g role=\"img\" aria-label=\"", stream);
    for (const char* const& line : lines) {
        if (&line != lines.begin() && *line != '\0') fputs(", ", stream);
        print_xml(stream, line);
    }
    fprintf(stream, "\"><rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" rx=\"5\" fill=\"%s\" stroke=\"%s\"%s/>\n",
            box.x, box.y, box.width, box.height, box.fill, box.edge,
            box.dashed ? " stroke-dasharray=\"5 4\"" : " stroke-width=\"2\"");
    int y = box.y + 20;
    for (const char* const& line : lines) {
        if (*line == '\0') continue;
        fprintf(stream, "<text x=\"%d\" y=\"%d\"%s>", box.x + 8, y,
                &line == lines.begin() ? " font-weight=\"bold\"" : "");
        print_xml_cut(stream, line, static_cast<size_t>((box.width - 16) / kPixelsAColumn));
        fputs("</text>\n", stream);
        y += kLineHeight;
    }
    fputs("</g>\n", stream);
}

// Boxes side by side, `columns` in a row; `draw` gets each record that `is_shown` and its box.
template <typename Record, typename IsShown, typename Draw>
void print_grid(Picture& picture, const List<Record>& list, int height, IsShown is_shown, Draw draw) {
    const int count = static_cast<int>(std::count_if(list.begin(), list.end(), is_shown));
    if (count == 0) return;
    const int columns = std::min(count, kMostColumns);
    const int width = (kWidth - 2 * kMargin - (columns - 1) * kGap) / columns;
    int place = 0;
    for (const Record& record : list) {
        if (!is_shown(record)) continue;
        const int x = kMargin + place % columns * (width + kGap);
        draw(record, Box{x, picture.y + place / columns * (height + kGap), width, height, kPlain});
        place++;
    }
    picture.y += (count + columns - 1) / columns * (height + kGap);
}

// ---- Bays ----

const char* name_of(const ArrayFacts& array) {
    return is_known(array.name) ? text_of(array.name) : text_of(array.device);
}

// The system's arrays are on every disk, and a disk used by itself is in one of its own: those colour none.
bool has_colour(const ArrayFacts& array) {
    if (is_known(array.name)) return strncmp(text_of(array.name), "array_", 6) != 0;
    return is_known(array.raid_disks) && array.raid_disks.value > 1;
}

const char* colour_of(const Facts& facts, const char* name) {
    size_t index = 0;
    for (const ArrayFacts& array : facts.arrays) {
        if (!has_colour(array)) continue;
        if (strcmp(name_of(array), name) == 0) return kColours[index % std::size(kColours)];
        index++;
    }
    return kPlain;
}

// The first thing that is wrong with it, or what it is.
const Problem* problem_of(const Facts& facts, const char* subject) {
    for (const Problem& problem : facts.problems) {
        if (*subject != '\0' && strcmp(text_of(problem.subject), subject) == 0) return &problem;
    }
    return nullptr;
}

const char* state_of(const Facts& facts, const DiskFacts& disk) {
    if (const Problem* problem = problem_of(facts, text_of(disk.name))) return text_of(problem->text);
    if (is_known(disk.asleep) && disk.asleep.value) return "asleep";
    return "no problem";
}

void print_bay(const Picture& picture, const Facts& facts, const DiskFacts& disk, Box box) {
    const bool filled = is_known(disk.device);
    const Problem* problem = problem_of(facts, text_of(disk.name));
    box.fill = filled ? colour_of(facts, text_of(disk.array)) : kEmpty;
    box.dashed = !filled;
    if (problem != nullptr) box.edge = problem->severity == kAtRisk ? "#b00000" : "#a05000";
    if (!filled)
        return print_box(picture, box, {text_of(disk.name), problem != nullptr ? text_of(problem->text) : "empty"});
    Row sizes;
    add_bytes(sizes, disk.size_bytes);
    const Text<64> degrees(is_known(disk.temperature_celsius) ? ", %d °C" : "%.0d",
                           is_known(disk.temperature_celsius) ? static_cast<int>(disk.temperature_celsius.value) : 0);
    const Text<256> first("%s  %s", text_of(disk.name), text_of(disk.device));
    const Text<256> second("%s%s", sizes.cells[0].text.c_str(), degrees.c_str());
    const Words& use = is_known(disk.array) ? disk.array : disk.status;
    print_box(picture, box, {first.c_str(), second.c_str(), text_of(use), text_of(disk.model), state_of(facts, disk)});
}

// ---- Ports ----

void print_port(const Picture& picture, const DiskFacts& disk, Box box) {
    box.dashed = !is_known(disk.device);
    if (box.dashed) box.fill = kEmpty;
    Row sizes;
    add_bytes(sizes, disk.size_bytes);
    const Text<256> what("%s, %s", text_of(disk.device), sizes.cells[0].text.c_str());
    print_box(picture, box,
              {text_of(is_known(disk.name) ? disk.name : disk.device), box.dashed ? "empty" : what.c_str()});
}

void print_network_port(const Picture& picture, const InterfaceFacts& interface, Box box) {
    const bool linked = is_known(interface.link) && interface.link.value;
    Row speeds;
    add_speed(speeds, interface.speed_bits_per_second);
    if (!linked) box.fill = kEmpty;
    const Text<256> first("%s  %s", text_of(interface.name), linked ? speeds.cells[0].text.c_str() : "no link");
    print_box(picture, box, {first.c_str(), is_known(interface.address) ? text_of(interface.address) : "no address"});
}

// ---- The rest ----

void print_heading(Picture& picture, const Facts& facts) {
    FILE* stream = picture.stream;
    fprintf(stream, "<text x=\"%d\" y=\"%d\" font-size=\"20\" font-weight=\"bold\">", kMargin, picture.y + 16);
    print_xml_cut(stream, is_known(facts.system.hostname) ? text_of(facts.system.hostname) : "appliance", 24);
    fprintf(stream, "</text>\n<text x=\"%d\" y=\"%d\" text-anchor=\"end\">", kWidth - kMargin, picture.y + 16);
    const Text<128> verdict("verdict: %s", word_of(facts.verdict));
    print_xml(stream, verdict.c_str());
    fputs("</text>\n", stream);
    picture.y += 32;
}

void print_display(Picture& picture, const Facts& facts) {
    if (!is_known(facts.system.front_panel)) return;
    const int width = kWidth - 2 * kMargin;
    fprintf(picture.stream,
            "<g role=\"img\" aria-label=\"front panel\"><rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"30\" rx=\"3\" "
            "fill=\"#10301c\"/>\n<text x=\"%d\" y=\"%d\" fill=\"#b8ffcf\" font-family=\"monospace\" "
            "xml:space=\"preserve\">",
            kMargin, picture.y, width, kMargin + 12, picture.y + 20);
    print_xml_cut(picture.stream, text_of(facts.system.front_panel), 64);
    fputs("</text></g>\n", picture.stream);
    picture.y += 30 + kGap;
}

void print_array_key(Picture& picture, const Facts& facts) {
    for (const ArrayFacts& array : facts.arrays) {
        if (!has_colour(array)) continue;
        const char* name = name_of(array);
        fprintf(picture.stream,
                "<rect x=\"%d\" y=\"%d\" width=\"16\" height=\"16\" fill=\"%s\" stroke=\"#444444\"/><text x=\"%d\" "
                "y=\"%d\">",
                kMargin, picture.y, colour_of(facts, name), kMargin + 24, picture.y + 13);
        const Problem* problem = problem_of(facts, name);
        const Text<512> line("%s (%s): %s%s%s", name, text_of(array.level),
                             is_known(array.state) ? text_of(array.state) : "state not known",
                             problem != nullptr ? ", " : "", problem != nullptr ? text_of(problem->text) : "");
        print_xml_cut(picture.stream, line.c_str(), 80);
        fputs("</text>\n", picture.stream);
        picture.y += 22;
    }
}

bool is_bay(const DiskFacts& disk) {
    return disk.kind == DISK_PATH_INTERNAL;
}
bool is_port(const DiskFacts& disk) {
    return disk.kind != DISK_PATH_INTERNAL;  // boot disks and the like beside them
}
bool is_network_port(const InterfaceFacts& interface) {
    return strcmp(text_of(interface.name), "lo") != 0;
}

void print_front(Picture& picture, const Facts& facts) {
    const auto bay = [&](const DiskFacts& disk, const Box& box) { print_bay(picture, facts, disk, box); };
    const auto port = [&](const DiskFacts& disk, const Box& box) { print_port(picture, disk, box); };
    print_heading(picture, facts);
    print_display(picture, facts);
    print_grid(picture, facts.disks, kBayHeight, is_bay, bay);
    print_grid(picture, facts.disks, kPortHeight, is_port, port);
    print_grid(picture, facts.interfaces, kPortHeight, is_network_port,
               [&](const InterfaceFacts& one, const Box& box) { print_network_port(picture, one, box); });
    print_array_key(picture, facts);
}

// How high the picture gets, drawn to nowhere.
int height_of(const Facts& facts) {
    FILE* nowhere = fopen("/dev/null", "we");
    if (nowhere == nullptr) return 2000;
    Picture picture = {nowhere};
    print_front(picture, facts);
    (void)fclose(nowhere);
    return picture.y + kMargin - kGap;
}

}  // namespace

void print_picture(const Facts& facts, FILE* stream) {
    const int height = height_of(facts);
    const Text<512> title("Front of %s, %s",
                          is_known(facts.system.hostname) ? text_of(facts.system.hostname) : "the appliance",
                          word_of(facts.verdict));
    fprintf(stream,
            "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %d %d\" width=\"%d\" height=\"%d\" "
            "font-family=\"sans-serif\" font-size=\"14\" fill=\"#111111\" role=\"group\" aria-label=\"",
            kWidth, height, kWidth, height);
    print_xml(stream, title.c_str());
    fputs("\">\n<title>", stream);
    print_xml(stream, title.c_str());
    fprintf(stream,
            "</title>\n<rect x=\"1\" y=\"1\" width=\"%d\" height=\"%d\" rx=\"10\" fill=\"#f6f6f6\" "
            "stroke=\"#444444\" stroke-width=\"2\"/>\n",
            kWidth - 2, height - 2);
    Picture picture = {stream};
    print_front(picture, facts);
    fputs("</svg>\n", stream);
}

}  // namespace report
