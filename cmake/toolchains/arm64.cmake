# 64-bit ARM.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(QUORVEL_TRIPLET aarch64-linux-gnu)
set(QUORVEL_EMULATOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
