// What was begun is finished.
#pragma once

/// Keeps off, until the end of the process and in the programs that it starts, every signal that would end or stop it
/// and does not report a fault of its own. Called in front of the first step that cannot be taken back: a signal that
/// came earlier has ended the process with nothing begun; a pipe that closes later is a failed write.
void hold_signals();
