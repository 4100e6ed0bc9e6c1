#include "report/quiet.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdio_ext.h>
#include <string.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "foundation/child.h"
#include "foundation/files.h"
#include "libquorvel_bin.h"

namespace report {

namespace {

constexpr size_t kMostWords = 6;
constexpr int kMostOutput = 1 << 20;  // what a pipe may hold

[[nodiscard]] quorvel::Descriptor duplicate(int descriptor) {
    return quorvel::Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

[[nodiscard]] quorvel::Descriptor open_null() {
    return quorvel::Descriptor(open("/dev/null", O_WRONLY | O_CLOEXEC));
}

// What had no room in the pipe must not come out elsewhere later.
bool all_written() {
    if (fflush(stdout) == 0 && ferror(stdout) == 0) return true;
    __fpurge(stdout);
    clearerr(stdout);
    return false;
}

// Neither end waits: nobody reads while there is writing.
[[nodiscard]] quorvel::Pipe make_store() {
    quorvel::Pipe store = quorvel::make_pipe();
    if (!store) return store;
    (void)fcntl(store.writing.number, F_SETPIPE_SZ, kMostOutput);  // a smaller one holds most answers
    for (const quorvel::Descriptor* end : {&store.reading, &store.writing}) {
        if (fcntl(end->number, F_SETFL, O_NONBLOCK) != 0) return {};
    }
    return store;
}

void start_over(const Quiet& quiet) {
    char dropped[4096];
    (void)all_written();
    while (read(quiet.store.number, dropped, sizeof dropped) > 0) {
    }
}

[[nodiscard]] quorvel::Heap<char> printed(const Quiet& quiet) {
    int length = 0;
    if (!all_written() || ioctl(quiet.store.number, FIONREAD, &length) != 0) return nullptr;
    const auto size = static_cast<size_t>(length);
    quorvel::Heap<char> text(static_cast<char*>(calloc(1, size + 1)));
    if (text == nullptr) return nullptr;
    return quorvel::read_fully(quiet.store.number, text.get(), size) == length ? std::move(text) : nullptr;
}

}  // namespace

Quiet::Quiet() : output(duplicate(STDOUT_FILENO)), error(duplicate(STDERR_FILENO)), level(debug) {
    (void)fflush(stdout);
    const quorvel::Descriptor nowhere = open_null();
    quorvel::Pipe pipe = output ? make_store() : quorvel::Pipe();
    (void)dup2(pipe ? pipe.writing.number : nowhere.number, STDOUT_FILENO);
    store = std::move(pipe.reading);
    if (nowhere) (void)dup2(nowhere.number, STDERR_FILENO);
    from_cmdline = 0;
    debug = 0;
}

Quiet::~Quiet() {
    (void)all_written();
    if (output) (void)dup2(output.number, STDOUT_FILENO);
    if (error) (void)dup2(error.number, STDERR_FILENO);
    debug = level;
}

quorvel::Heap<char> answer_of(const Quiet& quiet, int (*entry)(int, char**), std::initializer_list<const char*> words,
                              int& result) {
    result = -1;
    if (!quiet.store || words.size() > kMostWords) return nullptr;
    char* vector[kMostWords + 1] = {};
    int count = 0;
    for (const char* word : words)
        vector[count++] = const_cast<char*>(word);
    start_over(quiet);
    from_cmdline = 1;
    result = entry(count, vector);
    from_cmdline = 0;
    return printed(quiet);
}

}  // namespace report
