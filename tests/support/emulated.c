// Starts a board's program through an emulator under the name that this one was started by, so that links named after
// a command, and words that repeat argv[0], are what they are on the board. Built with EMULATOR and PROGRAM.
#define _GNU_SOURCE
#include <limits.h>
#include <stdio.h>
#include <string.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

enum { kOptions = 4 };

int main(int argc, char** argv) {
    char path[PATH_MAX];
    (void)mkdir("/run/emulated", 0700);
    (void)snprintf(path, sizeof path, "/run/emulated/%s", basename((const char*)getauxval(AT_EXECFN)));
    (void)symlink(PROGRAM, path);
    char* words[argc + kOptions];
    words[0] = EMULATOR;
    words[1] = "-0";
    words[2] = argv[0];
    words[3] = path;
    memcpy(words + kOptions, argv + 1, (size_t)argc * sizeof *words);
    return execv(EMULATOR, words);
}
