// What the caller left around the command, put right before the command looks at anything.
#pragma once

/// Missing descriptors 0 to 2 become /dev/null. Executed with rights that the caller does not have, the command gets an
/// environment of its own; otherwise only a time zone that names a file falls away.
void put_surroundings_right();

/// Raises limits of the caller's that no answer gets by with. The name of one that stays too low, or null.
[[nodiscard]] const char* low_limit();

/// Nothing held back, no alarm to come, and nothing ignored but the signal that a file may not grow further: for
/// commands that run programs, write or wait.
void put_signals_right();

/// The last component of the path that was executed, whatever the caller says in argv[0]; empty when it is unknown.
[[nodiscard]] char* executed_name();
