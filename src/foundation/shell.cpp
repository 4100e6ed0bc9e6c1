#include "foundation/shell.h"

#include <errno.h>
#include <stdio.h>
#include <sys/wait.h>

#include "quorvel/foundation.h"

namespace quorvel {

namespace {

[[nodiscard]] Child start(WholeText command, Output output, unsigned seconds = 0) {
    if (command.text != nullptr) return start_shell(command.text, output, seconds);
    errno = E2BIG;
    return Child();
}

}  // namespace

int run_command(WholeText command) {
    (void)fflush(stdout);
    Child child = start(command, Output::kOfCaller);
    return wait_for(child);
}

CommandOutput::CommandOutput(WholeText command, size_t piece_limit, unsigned seconds)
    : child(start(command, Output::kRead, seconds)), lines(child.output.number, piece_limit) {}

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
