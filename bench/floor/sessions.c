/* sessions: one line a connection of /proc/net/iet/session */
#include "floor.h"

struct part {
    char text[128];
    size_t length;
};

static char out[65536];
static size_t used;
static struct part tid, target, sid, initiator;

static void keep(struct part *part, const char *from, const char *end) {
    part->length = (size_t)(end - from) < sizeof part->text ? (size_t)(end - from) : sizeof part->text;
    memcpy(part->text, from, part->length);
}

static void put(const char *text, size_t length) {
    memcpy(out + used, text, length);
    used += length;
}

static void put_part(const struct part *part) {
    put(part->text, part->length);
    put("<>", 2);
}

static int line(const char *begin, const char *end, void *data) {
    (void)data;
    while (*begin == '\t') begin++;
    const char *blank = memchr(begin, ' ', (size_t)(end - begin));
    if (blank == NULL) return 0;
    if (*begin == 't') {
        keep(&tid, begin + 4, blank);
        keep(&target, blank + 6, end);
    } else if (*begin == 's') {
        keep(&sid, begin + 4, blank);
        keep(&initiator, blank + 11, end);
    } else if (*begin == 'c') {
        const char *address = blank + 4, *stop = memchr(address, ' ', (size_t)(end - address));
        if (stop == NULL) return 0;
        if (used + 4 * sizeof(struct part) + (size_t)(stop - address) > sizeof out) {
            floor_put(out, used);
            used = 0;
        }
        put_part(&tid);
        put_part(&target);
        put_part(&sid);
        put_part(&initiator);
        put(address, (size_t)(stop - address));
        put("\n", 1);
    }
    return 0;
}

int main(void) {
    floor_lines("/proc/net/iet/session", line, NULL);
    floor_put(out, used);
    return 0;
}
