# The musl C library, on a machine of this one's kind. Debian has musl for C only. The header-only part of its C++
# library is made for glibc; three headers in musl/bits stand in front of those of its own that say so. The library and
# the command are linked as C, so nothing of libstdc++ itself is needed; the tests, which need it, cannot be built.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${CMAKE_HOST_SYSTEM_PROCESSOR})
set(CMAKE_C_COMPILER musl-gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(QUORVEL_TESTS OFF CACHE BOOL "Build the tests (needs GoogleTest)")

# What -static-pie stands for; musl-gcc does not know it.
set(QUORVEL_STATIC_PIE -nostartfiles /usr/lib/${CMAKE_SYSTEM_PROCESSOR}-linux-musl/rcrt1.o
    -static -Wl,-pie,--no-dynamic-linker,-z,text)

execute_process(COMMAND g++ -dumpversion OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND g++ -print-file-name=include OUTPUT_VARIABLE compiler OUTPUT_STRIP_TRAILING_WHITESPACE)
set(machine ${CMAKE_SYSTEM_PROCESSOR}-linux)
# The kernel's headers without the C library's beside them.
set(kernel ${CMAKE_BINARY_DIR}/kernel-headers)
file(MAKE_DIRECTORY ${kernel})
file(CREATE_LINK /usr/include/linux ${kernel}/linux SYMBOLIC)
file(CREATE_LINK /usr/include/rapidjson ${kernel}/rapidjson SYMBOLIC)
file(CREATE_LINK /usr/include/asm-generic ${kernel}/asm-generic SYMBOLIC)
file(CREATE_LINK /usr/include/${machine}-gnu/asm ${kernel}/asm SYMBOLIC)
set(CMAKE_CXX_FLAGS_INIT -nostdinc)
foreach(directory ${CMAKE_CURRENT_LIST_DIR}/musl /usr/include/c++/${version} /usr/include/${machine}-gnu/c++/${version}
        /usr/include/${machine}-musl ${compiler} ${kernel})
    string(APPEND CMAKE_CXX_FLAGS_INIT " -isystem ${directory}")
endforeach()
