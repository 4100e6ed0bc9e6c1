# 32-bit ARM with a floating-point unit.
set(CMAKE_SYSTEM_PROCESSOR arm)
set(QUORVEL_TRIPLET arm-linux-gnueabihf)
set(QUORVEL_EMULATOR arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
