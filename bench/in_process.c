/* in_process floor|library|time QUESTION COUNT ARGUMENT...: asks the library, or the floor beside it, the same question
 * COUNT times in one process; callgrind counts what the function alone costs. "time" asks both in turn and prints the
 * median time of a call to each, in nanoseconds. */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

#include "floor/floor.h"
#include "libquorvel_bin.h"

static char **arguments;
static char answer[512];

/* The bytes of the file, line by line. */
static int no_match(const char *begin, const char *end, void *data) {
    *(uintptr_t *)data += (uintptr_t)(end - begin);
    return 0;
}

__attribute__((noinline)) void floor_scan(void) {
    uintptr_t total = 0;
    floor_lines(arguments[0], no_match, &total);
    answer[0] = total > 0 ? 'x' : '\0';
}

static void ask_key(void) {
    get_StringbyKey(arguments[0], arguments[1], answer, sizeof answer);
}

/* The third field, cut at the delimiters and copied out. */
__attribute__((noinline)) void floor_field(void) {
    const char *at = arguments[0], *delimiters = arguments[1], *end = NULL;
    for (int field = 0; field < 3; field++) {
        at += strspn(at, delimiters);
        end = at + strcspn(at, delimiters);
        if (field < 2) at = end;
    }
    memcpy(answer, at, (size_t)(end - at));
    answer[end - at] = '\0';
}

static void ask_field(void) {
    LibQuorvelBin_GetSpecifiedKey(answer, sizeof answer, arguments[0], arguments[1], 3);
}

/* The files that tell the platform and its table, and the link of the disk. */
__attribute__((noinline)) void floor_disk(void) {
    struct stat status;
    char path[64] = "/sys/block/", link[512];
    (void)stat("/sys/class/borel", &status);
    floor_read("/proc/bus/pci/devices", floor_block, sizeof floor_block);
    floor_read("/etc/nas_feature", floor_block, sizeof floor_block);
    floor_read("/proc/sys/kernel/osrelease", floor_block, sizeof floor_block);
    ssize_t length = readlink(strcat(path, arguments[0]), link, sizeof link - 1);
    if (length < 0) exit(1);
    link[length] = '\0';
    const char *host = strstr(link, "/host");
    strcpy(answer, host != NULL && host[5] == '8' ? "disk12" : "");
}

static void ask_disk(void) {
    LibQuorvelBin_GetDisknameFromDevname(arguments[0], answer, sizeof answer);
}

static const struct question {
    const char *word;
    void (*floor)(void);
    void (*ask)(void);
} questions[] = {
    {"key", floor_scan, ask_key},
    {"field", floor_field, ask_field},
    {"disk", floor_disk, ask_disk},
};

static long long timed(void (*call)(void)) {
    struct timespec begin, end;
    clock_gettime(CLOCK_MONOTONIC, &begin);
    for (int i = 0; i < 10; i++) {
        memset(answer, 0, sizeof answer);
        call();
    }
    clock_gettime(CLOCK_MONOTONIC, &end);
    return (end.tv_sec - begin.tv_sec) * 1000000000LL + end.tv_nsec - begin.tv_nsec;
}

static int ascending(const void *a, const void *b) {
    long long x = *(const long long *)a, y = *(const long long *)b;
    return (x > y) - (x < y);
}

static long long median(long long *values, int count) {
    qsort(values, (size_t)count, sizeof *values, ascending);
    return values[count / 2] / 10;
}

static int time_both(const struct question *question, int count) {
    long long *floor = calloc((size_t)count, sizeof *floor), *asked = calloc((size_t)count, sizeof *asked);
    if (floor == NULL || asked == NULL) return 2;
    for (int i = 0; i < count; i++) {
        floor[i] = timed(question->floor);
        asked[i] = timed(question->ask);
    }
    printf("%lld %lld\n", median(floor, count), median(asked, count));
    return 0;
}

int main(int argc, char **argv) {
    if (argc < 4) return 2;
    const char *way = argv[1];
    int count = atoi(argv[3]);
    arguments = argv + 4;
    for (size_t i = 0; i < sizeof questions / sizeof *questions; i++) {
        if (strcmp(argv[2], questions[i].word) != 0) continue;
        if (strcmp(way, "time") == 0) return time_both(&questions[i], count);
        void (*call)(void) = strcmp(way, "floor") == 0 ? questions[i].floor : questions[i].ask;
        for (int j = 0; j < count; j++) {
            memset(answer, 0, sizeof answer);
            call();
        }
        return answer[0] == '\0';
    }
    return 2;
}
