/* Preloaded into a command: its FAIL_ALLOCATION-th allocation fails, and "INJECTED" goes to the file that
 * FAIL_ALLOCATION_LOG names. */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);

static int fails_now(void) {
    static long allocations, failing = -1;
    if (failing < 0) {
        const char *number = getenv("FAIL_ALLOCATION");
        failing = number != NULL ? atol(number) : 0;
    }
    if (++allocations != failing) return 0;
    const char *log = getenv("FAIL_ALLOCATION_LOG");
    int file = log != NULL ? open(log, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644) : -1;
    if (file >= 0 && write(file, "INJECTED\n", 9) == 9) close(file);
    errno = ENOMEM;
    return 1;
}

void *malloc(size_t size) { return fails_now() ? NULL : __libc_malloc(size); }
void *calloc(size_t count, size_t size) { return fails_now() ? NULL : __libc_calloc(count, size); }
void *realloc(void *block, size_t size) { return fails_now() ? NULL : __libc_realloc(block, size); }
