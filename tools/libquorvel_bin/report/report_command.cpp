// report and status: the whole appliance in one answer, and the verdict alone.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "command.h"
#include "report/forms.h"
#include "report/gather.h"
#include "report/sources.h"

namespace {

using namespace report;

enum class Form { kScreen, kJson };

struct Options {
    Request request;
    Form form = Form::kScreen;
    bool help = false;
};

struct Word {
    const char* word;
    void (*apply)(Options& options);
};

constexpr Word kNoTools = {"--no-tools", [](Options& options) { options.request.tools = false; }};

constexpr Word kStatusWords[] = {kNoTools};

constexpr Word kReportWords[] = {
    {"--json",  [](Options& options) { options.form = Form::kJson; }  },
    kNoTools,
    {"--reach", [](Options& options) { options.request.reach = true; }},
};

bool read_options(int argc, char** argv, std::span<const Word> words, Options& options) {
    for (int i = 2; i < argc; i++) {
        const Word* found = nullptr;
        for (const Word& word : words) {
            if (strcmp(word.word, argv[i]) == 0) found = &word;
        }
        if (found == nullptr) {
            fprintf(stderr, "libquorvel_bin: %s: unknown option '%s'\n", argv[1], argv[i]);
            return false;
        }
        found->apply(options);
    }
    return true;
}

constexpr size_t kLeastColumns = 40;

size_t columns_of_screen() {
    const char* stated = getenv("COLUMNS");
    int64_t columns = 0;
    if (stated != nullptr && to_number(stated, columns) && columns > 0)
        return columns < static_cast<int64_t>(kLeastColumns) ? kLeastColumns : static_cast<size_t>(columns);
    struct winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col >= kLeastColumns) return size.ws_col;
    return 100;
}

// A set variable switches colour off, an empty one does not.
bool wants_colour() {
    const char* none = getenv("NO_COLOR");
    return isatty(STDOUT_FILENO) != 0 && (none == nullptr || none[0] == '\0');
}

bool print(const Facts& facts, Form form) {
    if (form == Form::kJson) return print_json(facts, stdout);
    print_screen(facts, stdout, columns_of_screen(), wants_colour());
    return true;
}

int run_report(int argc, char** argv) {
    Options options;
    if (!read_options(argc, argv, kReportWords, options)) return kExitUsage;
    Facts facts;
    gather(facts, options.request);
    return print(facts, options.form) ? kExitOk : kExitNo;
}

int run_status(int argc, char** argv) {
    Options options;
    options.request.parts = kSystemPart | kDiskListPart | kDiskPart | kArrayPart;
    options.request.contents = false;
    if (!read_options(argc, argv, kStatusWords, options)) return kUnknown;
    Facts facts;
    gather(facts, options.request);
    for (const Problem& problem : facts.problems)
        printf("%s: %s\n", text_of(problem.subject), text_of(problem.text));
    return facts.verdict;
}

// clang-format off
constexpr Command kCommands[] = {
    {"report", "[--json] [--no-tools] [--reach]", "all that is known of the appliance: a screen for people, or one JSON object", "0 printed, 1 not printed, 2 unknown option", 0, -1, run_report},
    {"status", "[--no-tools]",                    "what is wrong, a line each; nothing when all is well",                        "0 well, 1 degraded but nothing lost, 2 data at risk or lost, 3 not to be told", 0, -1, run_status},
};
// clang-format on

}  // namespace

const std::span<const Command> kReportCommands = kCommands;
