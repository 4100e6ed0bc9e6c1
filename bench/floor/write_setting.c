/* write_setting FILE KEY VALUE: temporary file beside it, the shell's mv, sync */
#include <stdlib.h>

#include "floor.h"

struct copy {
    const char *key;
    size_t length;
    int to;
    size_t used;
    char out[65536];
};

static void flush(struct copy *copy) {
    if (write(copy->to, copy->out, copy->used) < 0) _exit(1);
    copy->used = 0;
}

static int keep(const char *begin, const char *end, void *data) {
    struct copy *copy = data;
    size_t length = (size_t)(end - begin) + 1;
    if (length > copy->length && begin[copy->length] == '=' && memcmp(begin, copy->key, copy->length) == 0) return 0;
    if (copy->used + length > sizeof copy->out) flush(copy);
    memcpy(copy->out + copy->used, begin, length);
    copy->used += length;
    return 0;
}

int main(int argc, char **argv) {
    static struct copy copy;
    static char temporary[256], command[520];
    if (argc != 4) return 1;
    copy.key = argv[2];
    copy.length = strlen(argv[2]);
    strcat(strcpy(temporary, argv[1]), "_tmp");
    copy.to = open(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    floor_lines(argv[1], keep, &copy);
    strcat(strcat(strcat(strcpy(copy.out + copy.used, argv[2]), "="), argv[3]), "\n");
    copy.used += copy.length + strlen(argv[3]) + 2;
    flush(&copy);
    close(copy.to);
    strcat(strcat(strcat(strcpy(command, "mv "), temporary), " "), argv[1]);
    if (system(command) != 0) return 1;
    sync();
    strcat(strcpy(command, argv[3]), "\n");
    floor_put(command, strlen(command));
    return 0;
}
