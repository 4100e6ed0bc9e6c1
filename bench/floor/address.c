/* address A.B.C.D M.M.M.M: the network address */
#include "floor.h"

static const char *number(const char *text, unsigned *value) {
    *value = 0;
    while (*text >= '0' && *text <= '9') *value = *value * 10 + (unsigned)(*text++ - '0');
    return *text == '.' ? text + 1 : text;
}

int main(int argc, char **argv) {
    char answer[16], *to = answer;
    if (argc != 3) return 1;
    const char *address = argv[1], *mask = argv[2];
    for (int i = 0; i < 4; i++) {
        unsigned a, m;
        address = number(address, &a);
        mask = number(mask, &m);
        a &= m;
        if (a > 99) *to++ = (char)('0' + a / 100 % 10);
        if (a > 9) *to++ = (char)('0' + a / 10 % 10);
        *to++ = (char)('0' + a % 10);
        *to++ = i < 3 ? '.' : '\n';
    }
    floor_put(answer, (size_t)(to - answer));
    return 0;
}
