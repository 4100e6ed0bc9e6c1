# What `cmake --install` puts where: libraries, headers, the command, pkg-config and CMake package files.
include(CMakePackageConfigHelpers)
set(QUORVEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/libquorvel_bin)

install(TARGETS libquorvel_bin libquorvel_bin_static EXPORT libquorvel_bin-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS libquorvel_bin_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT libquorvel_bin-targets NAMESPACE quorvel:: DESTINATION ${QUORVEL_CMAKE_DIR})

configure_package_config_file(cmake/libquorvel_bin-config.cmake.in
    ${CMAKE_BINARY_DIR}/libquorvel_bin-config.cmake INSTALL_DESTINATION ${QUORVEL_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/libquorvel_bin-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/libquorvel_bin-config.cmake
    ${CMAKE_BINARY_DIR}/libquorvel_bin-config-version.cmake DESTINATION ${QUORVEL_CMAKE_DIR})

configure_file(cmake/libquorvel_bin.pc.in ${CMAKE_BINARY_DIR}/libquorvel_bin.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/libquorvel_bin.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
