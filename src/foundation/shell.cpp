#include "foundation/shell.h"

#include <errno.h>
#include <stdlib.h>
#include <sys/wait.h>

#include "quorvel/foundation.h"

namespace quorvel {

int run_command(const char* command) {
    (void)fflush(stdout);
    return system(command);
}

CommandOutput::CommandOutput(const char* command, size_t piece_limit)
    : pipe(command != nullptr ? popen(command, "re") : nullptr),
      lines(pipe != nullptr ? fileno(pipe) : -1, piece_limit) {
    if (command == nullptr) errno = E2BIG;
    lines.at_end = pipe == nullptr;
}

int CommandOutput::finish() {
    if (pipe == nullptr) return -1;
    FILE* open_pipe = pipe;
    pipe = nullptr;
    lines.at_end = true;
    return pclose(open_pipe);
}

bool could_not_execute(int wait_status) {
    return WIFEXITED(wait_status) && (WEXITSTATUS(wait_status) == 127 || WEXITSTATUS(wait_status) == 126);
}

Heap<char> capture_command(const char* command, int& status) {
    char* output = nullptr;
    status = ExecPipe(command, &output);
    return Heap<char>(output);
}

}  // namespace quorvel
