// The forms of the report, judged by readers: files that it gathers facts from hold whatever the fuzzer says, and JSON,
// metrics and page must still be well-formed. An input is the texts of several files, with a byte 1d between them.
#include "report/forms.h"

#include <fcntl.h>
#include <rapidjson/reader.h>
#include <sanitizer/common_interface_defs.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "report/gather.h"
#include "surroundings.h"
#include "utf8.h"

namespace {

constexpr const char* kPaths[] = {
    "/proc/mdstat",
    "/etc/tevra/diskinfo",
    "/etc/nas_feature",
    "/etc/tevra/info",
    "/proc/mounts",
    "/proc/net/iet/session",
    "/etc/tevra/backup1",
    "/etc/tevra/service_ports",
    "/etc/resolv.conf",
    "/dev/disk1",
    "/proc/quorvel/firmware",
    "/tmp/pvlist",
    "/tmp/lvlist",
    "/etc/diskpath.conf",
    "/proc/partitions",
    "/sys/block/md2/md/level",
    "/sys/block/md2/md/array_state",
};

void require(bool holds) {
    if (!holds) abort();
}

// ---- JSON ----

void judge_json(std::string_view text) {
    rapidjson::MemoryStream stream(text.data(), text.size());
    rapidjson::BaseReaderHandler<> handler;
    rapidjson::Reader reader;
    require(!reader.Parse<rapidjson::kParseValidateEncodingFlag>(stream, handler).IsError());
}

// ---- Metrics: "name{label="value",...} number" ----

size_t skip_name(std::string_view line, size_t at) {
    const size_t end = line.find_first_not_of("abcdefghijklmnopqrstuvwxyz_", at);
    require(end != at && end != std::string_view::npos);
    return end;
}

// Behind the closing quote.
size_t skip_value(std::string_view line, size_t at) {
    for (require(line[at++] == '"'); line.at(at) != '"'; at++) {
        if (line[at] == '\\') require(strchr("\\\"n", line.at(++at)) != nullptr);
    }
    return at + 1;
}

void judge_sample(std::string_view line, std::set<std::string>& samples) {
    size_t at = skip_name(line, 0);
    if (line[at] == '{') {
        do {
            at = skip_name(line, at + 1);
            require(line[at] == '=');
            at = skip_value(line, at + 1);
        } while (line.at(at) == ',');
        require(line[at++] == '}');
    }
    require(line.at(at) == ' ' && samples.insert(std::string(line.substr(0, at))).second);
    char* end = nullptr;
    const std::string number(line.substr(at + 1));
    (void)strtod(number.c_str(), &end);
    require(!number.empty() && *end == '\0');
}

void judge_metrics(std::string_view text) {
    require(is_utf8(text) && text.ends_with('\n'));
    std::set<std::string> samples;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(line.size() + 1);
        if (!line.starts_with("# HELP quorvel_") && !line.starts_with("# TYPE quorvel_")) judge_sample(line, samples);
    }
}

// ---- XML: every element ended, text and attributes without markup of their own ----

void judge_characters(std::string_view text) {
    for (size_t i = 0; i < text.size(); i++) {
        require(text[i] != '<' && text[i] != '>' && (static_cast<unsigned char>(text[i]) >= 0x20 || text[i] == '\n'));
        if (text[i] != '&') continue;
        bool known = false;
        for (const char* reference : {"&amp;", "&lt;", "&gt;", "&quot;", "&#39;"})
            known = known || text.substr(i).starts_with(reference);
        require(known);
    }
    require(text.find("\xef\xbf\xbe") == std::string_view::npos && text.find("\xef\xbf\xbf") == std::string_view::npos);
}

// A tag without its brackets.
void judge_tag(std::string_view tag, std::vector<std::string>& open) {
    if (tag.starts_with('!')) return;
    const std::string name(tag.substr(0, tag.find_first_of(" /", 1)));
    if (name.starts_with('/')) {
        require(!open.empty() && "/" + open.back() == name);
        open.pop_back();
        return;
    }
    bool quoted = false;
    for (char c : tag)
        quoted = quoted != (c == '"');
    require(!quoted);
    if (!tag.ends_with('/')) open.push_back(name);
}

void judge_page(std::string_view text) {
    require(is_utf8(text));
    std::vector<std::string> open;
    while (!text.empty()) {
        const size_t begin = text.find('<');
        judge_characters(text.substr(0, begin));
        if (begin == std::string_view::npos) break;
        const size_t end = text.find('>', begin);
        require(end != std::string_view::npos);
        judge_tag(text.substr(begin + 1, end - begin - 1), open);
        text.remove_prefix(end + 1);
    }
    require(open.empty());
}

// ---- One report ----

template <typename Print>
void judge(Print print, void (*reader)(std::string_view text)) {
    report::Facts facts;
    report::Request request;
    request.tools = false;
    report::gather(facts, request);
    char* text = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    print(facts, stream);
    (void)fclose(stream);
    reader({text, size});
    free(text);
}

}  // namespace

// clang-format off
const FuzzTarget kTargets[] = {
    {"report_json",    nullptr, [] { judge(report::print_json, judge_json); }},
    {"report_metrics", nullptr, [] { judge(report::print_metrics, judge_metrics); }},
    {"report_page",    nullptr, [] { judge(report::print_page, judge_page); }},
    {"report_screen",  nullptr, [] { judge([](const report::Facts& facts, FILE* stream) { report::print_screen(facts, stream, 60, true); },
                                           [](std::string_view text) { require(is_utf8(text)); }); }},
    {nullptr, nullptr, nullptr},
};
// clang-format on

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // While facts are gathered nothing is said on standard error.
    static const int kReports = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 100);
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<intptr_t>(kReports)));
    std::string_view texts(reinterpret_cast<const char*>(data), size);
    for (const char* path : kPaths) {
        const std::string_view text = texts.substr(0, texts.find('\x1d'));
        put_file(path, text.data(), text.size());
        texts.remove_prefix(text.size() < texts.size() ? text.size() + 1 : text.size());
    }
    chosen_target().run();
    return 0;
}
