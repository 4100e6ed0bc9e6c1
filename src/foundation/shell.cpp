#include "foundation/shell.h"

#include <errno.h>
#include <stdio.h>
#include <sys/wait.h>

#include <utility>

#include "quorvel/foundation.h"

namespace quorvel {

namespace {

// Outside it are letters and digits, which no shell reads as syntax anywhere.
constexpr char kPlainMarks[] = "+,-./:@_%";

bool is_plain(char c) {
    return is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c != '\0' && strchr(kPlainMarks, c));
}

}  // namespace

ShellWord::ShellWord(const char* word) : plain(word) {
    while (is_plain(*word))
        word++;
    if (*word == '\0') return;
    quoted.add("'");
    for (const char* c = std::exchange(plain, nullptr); *c != '\0'; c++)
        quoted.add(*c == '\'' ? std::string_view("'\\''") : std::string_view(c, 1));
    quoted.add("'");
}

namespace {

Child start(WholeText command, Output output) {
    if (command.text != nullptr) return start_shell(command.text, output);
    errno = E2BIG;
    return Child();
}

}  // namespace

int run_command(WholeText command) {
    (void)fflush(stdout);
    Child child = start(command, Output::kOfCaller);
    return wait_for(child);
}

CommandOutput::CommandOutput(WholeText command, size_t piece_limit)
    : child(start(command, Output::kRead)), lines(child.output.number, piece_limit) {}

int CommandOutput::finish() {
    lines.at_end = true;
    return wait_for(child);
}

bool could_not_execute(int wait_status) {
    return WIFEXITED(wait_status) && (WEXITSTATUS(wait_status) == 127 || WEXITSTATUS(wait_status) == 126);
}

Captured capture_command(WholeText command) {
    char* output = nullptr;
    int status = ExecPipe(command.text, &output);
    return {Heap<char>(output), status};
}

}  // namespace quorvel
