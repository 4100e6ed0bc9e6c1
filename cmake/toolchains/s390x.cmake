# 64-bit and big-endian: no board, but the on-disk records must come out the same.
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(QUORVEL_TRIPLET s390x-linux-gnu)
set(QUORVEL_EMULATOR s390x)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
