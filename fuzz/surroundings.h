// What a fuzz target runs in: an appliance of its own inside the disposable root; commands print the fuzzer's text and
// do nothing, unless a target has them run.
#pragma once

#include <stddef.h>
#include <stdint.h>

// Writes a file, its directories included.
void put_file(const char* path, const void* data, size_t size);

// What every command prints from now on.
void set_command_output(const void* data, size_t size);

// From now on commands do what they are asked for.
void run_commands();

// So many more commands are started; then no process is left (EAGAIN).
void allow_commands(int count);

// Frees the records of the inventory, which otherwise live as long as the process.
void forget_inventory();

// A row of a program's table of targets; each program ends its table with a row of nulls.
struct FuzzTarget {
    const char* name;
    const char* path;  // the file its text goes to; null for none
    void (*run)();
};
extern const FuzzTarget kTargets[];

// The row that --target=NAME named.
const FuzzTarget& chosen_target();
