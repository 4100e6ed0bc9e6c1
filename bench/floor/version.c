#include "floor.h"

int main(void) {
    floor_put("libquorvel_bin 1.0.0\n", 21);
    return 0;
}
