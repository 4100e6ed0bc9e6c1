// Prints the logical name of each kernel device given: "sda disk1".
#include <libquorvel_bin.h>

#include <array>
#include <iostream>

int main(int argc, char** argv) {
    int unknown = 0;
    for (int i = 1; i < argc; i++) {
        std::array<char, 128> name{};
        if (LibQuorvelBin_GetDisknameFromDevname(argv[i], name.data(), name.size()) == 0) {
            std::cout << argv[i] << ' ' << name.data() << '\n';
        } else {
            unknown = 1;
        }
    }
    return unknown;
}
