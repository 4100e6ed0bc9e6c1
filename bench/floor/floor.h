/* What every floor program needs: raw system calls, one big buffer, no stdio. A floor does the job of one command and
 * nothing else: no options, no failure handling beyond giving up, the paths written in. */
#ifndef FLOOR_H
#define FLOOR_H

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static char floor_block[65536];

static inline ssize_t floor_read(const char *path, char *to, size_t size) {
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return -1;
    ssize_t length = read(fd, to, size);
    close(fd);
    return length;
}

static inline void floor_put(const char *text, size_t length) {
    if (write(1, text, length) < 0) _exit(1);
}

/* Calls line(begin, end, data) for each line, end pointing at its line feed, until it returns non-zero. */
static inline int floor_lines(const char *path, int (*line)(const char *, const char *, void *), void *data) {
    int fd = open(path, O_RDONLY | O_CLOEXEC), stop = 0;
    if (fd < 0) return 0;
    size_t kept = 0;
    ssize_t got;
    while (!stop && (got = read(fd, floor_block + kept, sizeof floor_block - kept)) > 0) {
        char *begin = floor_block, *end = floor_block + kept + got, *feed;
        while (!stop && (feed = memchr(begin, '\n', (size_t)(end - begin))) != NULL) {
            stop = line(begin, feed, data);
            begin = feed + 1;
        }
        kept = (size_t)(end - begin);
        memmove(floor_block, begin, kept);
    }
    close(fd);
    return stop;
}

#endif
