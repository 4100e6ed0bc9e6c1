/* sessions: one line a connection of /proc/net/iet/session */
#include "floor.h"

static char out[16384], tid[16], target[128], sid[32], initiator[128];
static size_t used;

static void field(char *to, size_t size, const char *from, const char *end, const char *stops) {
    size_t length = 0;
    while (from < end && strchr(stops, *from) == NULL && length + 1 < size) to[length++] = *from++;
    to[length] = '\0';
}

static void put(const char *text) {
    size_t length = strlen(text);
    memcpy(out + used, text, length);
    used += length;
}

static int line(const char *begin, const char *end, void *data) {
    (void)data;
    while (begin < end && (*begin == ' ' || *begin == '\t')) begin++;
    const char *name = memchr(begin, ' ', (size_t)(end - begin));
    if (name == NULL) return 0;
    if (memcmp(begin, "tid:", 4) == 0) {
        field(tid, sizeof tid, begin + 4, end, " ");
        field(target, sizeof target, name + 6, end, "");
    } else if (memcmp(begin, "sid:", 4) == 0) {
        field(sid, sizeof sid, begin + 4, end, " ");
        field(initiator, sizeof initiator, name + 11, end, "");
    } else if (memcmp(begin, "cid:", 4) == 0) {
        char address[64];
        field(address, sizeof address, name + 4, end, " :");
        if (used + 512 > sizeof out) {
            floor_put(out, used);
            used = 0;
        }
        put(tid);
        put("<>");
        put(target);
        put("<>");
        put(sid);
        put("<>");
        put(initiator);
        put("<>");
        put(address);
        put("\n");
    }
    return 0;
}

int main(void) {
    floor_lines("/proc/net/iet/session", line, NULL);
    floor_put(out, used);
    return 0;
}
