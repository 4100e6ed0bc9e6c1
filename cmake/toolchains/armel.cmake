# 32-bit ARM without a floating-point unit: the oldest boards.
set(CMAKE_SYSTEM_PROCESSOR arm)
set(QUORVEL_TRIPLET arm-linux-gnueabi)
set(QUORVEL_EMULATOR arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
