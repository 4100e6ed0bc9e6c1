/* Preloaded into a command: its FAIL_ALLOCATION-th allocation fails, and "INJECTED" goes to the file that
 * FAIL_ALLOCATION_LOG names. With KEPT, what the command and the library allocated themselves and hold at the end, and
 * the descriptors open then beyond those at the start, are counted: more of them than KEPT ends the command with status 120. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { kMostBlocks = 4096, kMostDescriptors = 64, kLeaks = 120 };

void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void __libc_free(void *block);

static void *held[kMostBlocks];
static int held_count;

/* Not a tool that the command runs, which is given the same surroundings. */
static int is_the_command(void) { return strncmp(program_invocation_short_name, "libquorvel_bin", 14) == 0; }

static int fails_now(void) {
    static long allocations, failing = -1;
    if (failing < 0) {
        const char *number = getenv("FAIL_ALLOCATION");
        failing = number != NULL && is_the_command() ? atol(number) : 0;
    }
    if (++allocations != failing) return 0;
    const char *log = getenv("FAIL_ALLOCATION_LOG");
    int file = log != NULL ? open(log, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644) : -1;
    if (file >= 0 && write(file, "INJECTED\n", 9) == 9) close(file);
    errno = ENOMEM;
    return 1;
}

static void *hold(void *block, const void *caller) {
    Dl_info place;
    if (block != NULL && held_count < kMostBlocks && dladdr(caller, &place) != 0 &&
        strstr(place.dli_fname, "libquorvel_bin") != NULL)
        held[held_count++] = block;
    return block;
}

static void let_go(void *block) {
    for (int i = held_count; block != NULL && i-- > 0;)
        if (held[i] == block) {
            held[i] = held[--held_count];
            return;
        }
}

void *malloc(size_t size) { return fails_now() ? NULL : hold(__libc_malloc(size), __builtin_return_address(0)); }
void *calloc(size_t count, size_t size) {
    return fails_now() ? NULL : hold(__libc_calloc(count, size), __builtin_return_address(0));
}
void *realloc(void *block, size_t size) {
    void *moved = fails_now() ? NULL : __libc_realloc(block, size);
    if (moved == NULL) return NULL;
    let_go(block);
    return hold(moved, __builtin_return_address(0));
}
void free(void *block) {
    let_go(block);
    __libc_free(block);
}

static int open_descriptors(void) {
    int count = 0;
    for (int descriptor = 0; descriptor < kMostDescriptors; descriptor++)
        count += fcntl(descriptor, F_GETFD) != -1;
    return count;
}

static int given_descriptors;

__attribute__((constructor)) static void count_what_is_given(void) { given_descriptors = open_descriptors(); }

__attribute__((destructor)) static void count_what_is_held(void) {
    const char *kept = getenv("KEPT");
    if (kept == NULL || !is_the_command()) return;
    if (held_count + open_descriptors() - given_descriptors > atoi(kept)) _exit(kLeaks);
}
