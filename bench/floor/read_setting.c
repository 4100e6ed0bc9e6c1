/* read_setting FILE KEY */
#include "floor.h"

struct wanted {
    const char *key;
    size_t length;
};

static int match(const char *begin, const char *end, void *data) {
    const struct wanted *wanted = data;
    if ((size_t)(end - begin) <= wanted->length || begin[wanted->length] != '=') return 0;
    if (memcmp(begin, wanted->key, wanted->length) != 0) return 0;
    floor_put(begin + wanted->length + 1, (size_t)(end - begin) - wanted->length);
    return 1;
}

int main(int argc, char **argv) {
    struct wanted wanted = {argv[2], strlen(argv[2])};
    return argc != 3 || !floor_lines(argv[1], match, &wanted);
}
