#include "foundation/shell.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/wait.h>

#include "quorvel/foundation.h"

namespace quorvel {

namespace {

[[nodiscard]] Child start(WholeText command, Output output) {
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

void CommandOutput::expect_within(int64_t patience) {
    (void)fcntl(lines.descriptor, F_SETFL, O_NONBLOCK);
    lines.patience = patience;
}

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
