#include "held_signals.h"

#include <signal.h>

#include <initializer_list>

void hold_signals() {
    sigset_t held;
    (void)sigfillset(&held);
    // A fault cannot be put off, and waiting for programs needs the news of their end.
    for (int kept : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGABRT, SIGCHLD})
        (void)sigdelset(&held, kept);
    (void)sigprocmask(SIG_BLOCK, &held, nullptr);
}
