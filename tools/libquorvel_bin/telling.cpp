#include "telling.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>

int no_answer(const char* word, const char* name, const char* reason) {
    (void)fflush(stdout);
    const bool named = name != nullptr;
    fprintf(stderr, "libquorvel_bin: %s: %s%s%s\n", word, named ? name : "", named ? ": " : "", reason);
    return kExitNo;
}

const char* reason_of_errno(const char* otherwise) {
    return errno != 0 ? strerror(errno) : otherwise;
}

const char* reason_of_file(const char* path, const char* otherwise) {
    return access(path, R_OK) != 0 ? strerror(errno) : otherwise;
}

bool read_number(const char* word, const char* text, unsigned limit, unsigned& number) {
    const char* end = text + strlen(text);
    std::from_chars_result result = std::from_chars(text, end, number);
    if (result.ec == std::errc() && result.ptr == end && number <= limit) return true;
    fprintf(stderr, "libquorvel_bin: %s: '%s' is no number from 0 to %u\n", word, text, limit);
    return false;
}

bool is_path(std::string_view name) {
    constexpr std::string_view kNodes = "/dev/";
    if (name.starts_with(kNodes)) name.remove_prefix(kNodes.size());
    return name.find('/') != std::string_view::npos;
}

unsigned letters_between(std::string_view one, std::string_view other) {
    constexpr size_t kLongest = 31;
    if (one.size() > kLongest || other.size() > kLongest) return kLongest;
    // Row by row: the costs from each beginning of one word to the beginnings of the other.
    unsigned costs[kLongest + 1] = {};
    for (size_t i = 0; i <= other.size(); i++)
        costs[i] = static_cast<unsigned>(i);
    for (size_t row = 0; row < one.size(); row++) {
        unsigned diagonal = costs[0]++;
        for (size_t i = 0; i < other.size(); i++) {
            unsigned exchanged = diagonal + (one[row] != other[i] ? 1 : 0);
            diagonal = costs[i + 1];
            costs[i + 1] = std::min({exchanged, diagonal + 1, costs[i] + 1});
        }
    }
    return costs[other.size()];
}

AnswersAside::AnswersAside() {
    (void)fflush(stdout);
    saved = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (saved >= 0) (void)dup2(STDERR_FILENO, STDOUT_FILENO);
}

AnswersAside::~AnswersAside() {
    (void)fflush(stdout);
    if (saved < 0) return;
    (void)dup2(saved, STDOUT_FILENO);
    (void)close(saved);
}
