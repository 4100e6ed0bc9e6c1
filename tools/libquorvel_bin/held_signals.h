// What was begun is finished.
#pragma once

#include "foundation/child.h"

/// Keeps off, until the end of the process, every signal that would end or stop it. Called in front of the first step
/// that cannot be taken back: a signal that came earlier has ended the process with nothing begun; one that comes later
/// does not take the status away that tells of the work. The library guards the programs that it runs meanwhile.
inline void hold_signals() {
    sigset_t ending = quorvel::ending_signals();
    (void)sigprocmask(SIG_BLOCK, &ending, nullptr);
}
