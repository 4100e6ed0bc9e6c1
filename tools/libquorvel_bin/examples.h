// The examples of the commands, with what they print on a sample appliance.
#pragma once

/// Prints the example of a command, if there is one.
void print_example(const char* word);

/// What the sample appliances answer, put together by the build: "@ MODEL" in front of each one's, "$ LINE" in front of
/// what a line prints, "= STATUS" behind it.
extern const char kExampleText[];
