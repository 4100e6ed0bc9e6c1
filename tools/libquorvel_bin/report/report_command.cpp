// report and status: the whole appliance in one answer, and the verdict alone.
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "command.h"
#include "foundation/handles.h"
#include "foundation/replacement.h"
#include "foundation/text.h"
#include "report/forms.h"
#include "report/gather.h"
#include "report/place.h"
#include "report/sources.h"

namespace {

using namespace report;

enum class Form { kScreen, kJson, kMetrics, kPicture, kPage };

struct Options {
    Request request;
    Form form = Form::kScreen;
    const char* file = nullptr;  // in place of standard output
    bool help = false;
};

struct Word {
    const char* word;
    void (*apply)(Options& options);
};

constexpr Word kNoTools = {"--no-tools", [](Options& options) { options.request.tools = false; }};

constexpr Word kStatusWords[] = {kNoTools};

constexpr Word kReportWords[] = {
    {"--json",        [](Options& options) { options.form = Form::kJson; }   },
    {"--openmetrics", [](Options& options) { options.form = Form::kMetrics; }},
    {"--svg",         [](Options& options) { options.form = Form::kPicture; }},
    {"--html",        [](Options& options) { options.form = Form::kPage; }   },
    {"--reach",       [](Options& options) { options.request.reach = true; } },
    kNoTools,
};

// The file behind an option "-o" among the words of "report".
bool is_file_option(int argc, char** argv, int i, std::span<const Word> words) {
    return words.data() == kReportWords && strcmp(argv[i], "-o") == 0 && i + 1 < argc;
}

[[nodiscard]] bool read_options(int argc, char** argv, std::span<const Word> words, Options& options) {
    for (int i = 2; i < argc; i++) {
        if (is_file_option(argc, argv, i, words)) {
            options.file = argv[++i];
            continue;
        }
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

[[nodiscard]] bool print(const Facts& facts, Form form, FILE* stream) {
    switch (form) {
        case Form::kJson:
            return print_json(facts, stream);
        case Form::kMetrics:
            print_metrics(facts, stream);
            break;
        case Form::kPicture:
            print_picture(facts, stream);
            break;
        case Form::kPage:
            print_page(facts, stream);
            break;
        case Form::kScreen:
            print_screen(facts, stream, columns_of_screen(), stream == stdout && wants_colour());
            break;
    }
    return true;
}

// The mode of a file that somebody else laid there is no reason to show him the report.
[[nodiscard]] bool print_whole(const Facts& facts, Form form, FILE* stream, const struct stat* replaced) {
    if (!print(facts, form, stream) || fflush(stream) != 0 || ferror(stream) != 0) return false;
    const bool own = replaced != nullptr && replaced->st_uid == geteuid();
    quorvel::give_mode_and_owner(fileno(stream), own ? replaced : nullptr);
    return true;
}

// A reader of the file sees the old report or the new one: it is written beside it, locked, and moved into its place. A
// device, or a link such as /dev/stdout, must not become a file.
[[nodiscard]] bool print_to_file(const Facts& facts, const Options& options) {
    const char* name = enter_directory_of(options.file);
    if (name == nullptr) return false;
    struct stat replaced;
    const bool there = lstat(name, &replaced) == 0;
    if (there && !S_ISREG(replaced.st_mode)) {
        errno = EEXIST;
        return false;
    }
    const quorvel::Text<4096> beside("%s_tmp", name);
    quorvel::Descriptor made = quorvel::open_replacement(beside);
    const quorvel::File file(made ? fdopen(made.number, "w") : nullptr);
    if (file == nullptr) return false;
    (void)made.release();  // the stream has it
    if (print_whole(facts, options.form, file.get(), there ? &replaced : nullptr) &&
        rename(beside.c_str(), name) == 0) {
        return true;
    }
    const int reason = errno;
    (void)unlink(beside.c_str());
    errno = reason;
    return false;
}

int run_report(int argc, char** argv) {
    Options options;
    if (!read_options(argc, argv, kReportWords, options)) return kExitUsage;
    Facts facts;
    gather(facts, options.request);
    if (options.file == nullptr) return print(facts, options.form, stdout) ? kExitOk : kExitNo;
    if (print_to_file(facts, options)) return kExitOk;
    fprintf(stderr, "libquorvel_bin: %s: cannot write %s: %s\n", argv[1], options.file, strerror(errno));
    return kExitNo;
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
    {"report", "[--json|--openmetrics|--svg|--html] [-o FILE] [--no-tools] [--reach]", "all that is known of the appliance: a screen for people, JSON, metrics, a picture or a page", "0 printed, 1 not written, 2 unknown option", 0, -1, run_report},
    {"status", "[--no-tools]", "what is wrong, a line each; nothing when all is well",                        "0 well, 1 degraded but nothing lost, 2 data at risk or lost, 3 not to be told", 0, -1, run_status},
};
// clang-format on

}  // namespace

const std::span<const Command> kReportCommands = kCommands;
