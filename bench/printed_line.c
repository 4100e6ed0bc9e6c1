/* What one printf costs in peak memory: the C library's printing code, mapped as soon as it runs. */
#include <stdio.h>

int main(void) {
    return printf("%s %d.%d.%d\n", "libquorvel_bin", 1, 0, 0) < 0;
}
