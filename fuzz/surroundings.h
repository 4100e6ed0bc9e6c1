// What a fuzz target runs in: an appliance of its own inside the disposable root, commands that are not really run.
#pragma once

#include <stddef.h>
#include <stdint.h>

// Writes a file, its directories included.
void put_file(const char* path, const void* data, size_t size);

// What every command run with popen prints from now on.
void set_command_output(const void* data, size_t size);

// The row that --target=ROW names: called once, before the first input. False for an unknown one.
bool choose_target(const char* name);
