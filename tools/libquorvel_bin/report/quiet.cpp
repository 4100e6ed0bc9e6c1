#include "report/quiet.h"

#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include "foundation/files.h"
#include "libquorvel_bin.h"

namespace report {

namespace {

constexpr size_t kMostWords = 6;
constexpr off_t kMostOutput = 4 << 20;

[[nodiscard]] quorvel::Descriptor duplicate(int descriptor) {
    return quorvel::Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

[[nodiscard]] quorvel::Descriptor open_null() {
    return quorvel::Descriptor(open("/dev/null", O_WRONLY | O_CLOEXEC));
}

[[nodiscard]] bool start_over(const Quiet& quiet) {
    (void)fflush(stdout);
    return ftruncate(quiet.memory.number, 0) == 0 && lseek(quiet.memory.number, 0, SEEK_SET) == 0;
}

[[nodiscard]] quorvel::Heap<char> printed(const Quiet& quiet) {
    (void)fflush(stdout);
    const off_t length = lseek(quiet.memory.number, 0, SEEK_CUR);
    if (length < 0 || length > kMostOutput) return nullptr;
    const auto size = static_cast<size_t>(length);
    quorvel::Heap<char> text(static_cast<char*>(calloc(1, size + 1)));
    if (text == nullptr || lseek(quiet.memory.number, 0, SEEK_SET) != 0) return nullptr;
    return quorvel::read_fully(quiet.memory.number, text.get(), size) == length ? std::move(text) : nullptr;
}

}  // namespace

Quiet::Quiet()
    : output(duplicate(STDOUT_FILENO)),
      error(duplicate(STDERR_FILENO)),
      memory(memfd_create("answers", MFD_CLOEXEC)),
      level(debug) {
    (void)fflush(stdout);
    const quorvel::Descriptor nowhere = open_null();
    (void)dup2(memory ? memory.number : nowhere.number, STDOUT_FILENO);
    if (nowhere) (void)dup2(nowhere.number, STDERR_FILENO);
    from_cmdline = 0;
    debug = 0;
}

Quiet::~Quiet() {
    (void)fflush(stdout);
    if (output) (void)dup2(output.number, STDOUT_FILENO);
    if (error) (void)dup2(error.number, STDERR_FILENO);
    debug = level;
}

quorvel::Heap<char> answer_of(const Quiet& quiet, int (*entry)(int, char**), std::initializer_list<const char*> words,
                              int& result) {
    result = -1;
    if (!quiet.memory || words.size() > kMostWords) return nullptr;
    char* vector[kMostWords + 1] = {};
    int count = 0;
    for (const char* word : words)
        vector[count++] = const_cast<char*>(word);
    if (!start_over(quiet)) return nullptr;
    from_cmdline = 1;
    result = entry(count, vector);
    from_cmdline = 0;
    return printed(quiet);
}

}  // namespace report
