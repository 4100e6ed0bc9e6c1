/* list_settings FILE: every setting behind two tabs */
#include "floor.h"

static char out[65536];
static size_t used;

static int list(const char *begin, const char *end, void *data) {
    size_t length = (size_t)(end - begin) + 1;
    (void)data;
    if (used + length + 2 > sizeof out) {
        floor_put(out, used);
        used = 0;
    }
    out[used++] = '\t';
    out[used++] = '\t';
    memcpy(out + used, begin, length);
    used += length;
    return 0;
}

int main(int argc, char **argv) {
    if (argc != 2) return 1;
    floor_lines(argv[1], list, NULL);
    floor_put(out, used);
    return 0;
}
