#include "held_signals.h"

#include <signal.h>

#include <algorithm>
#include <iterator>

namespace {

// A fault cannot be put off, and waiting for programs needs the news of their end.
constexpr int kKept[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGABRT, SIGCHLD};

}  // namespace

// Ignored, not blocked: a shell unblocks what it finds blocked, and leaves alone what it finds ignored.
void hold_signals() {
    for (int number = 1; number < NSIG; number++) {
        if (std::find(std::begin(kKept), std::end(kKept), number) == std::end(kKept)) (void)signal(number, SIG_IGN);
    }
}
