# What `cmake --install` puts where: libraries, headers, the command with its links and its completion, pkg-config and
# CMake package files. The manual pages are installed by docs/man.
include(CMakePackageConfigHelpers)
set(QUORVEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/libquorvel_bin)

install(TARGETS libquorvel_bin libquorvel_bin_static EXPORT libquorvel_bin-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(PROGRAMS tools/quorvel_record/quorvel_record DESTINATION ${CMAKE_INSTALL_BINDIR})
install(CODE "set(CMAKE_INSTALL_FULL_BINDIR \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
configure_file(\"${CMAKE_SOURCE_DIR}/packaging/udev/62-quorvel-by-bay.rules.in\" \"${CMAKE_BINARY_DIR}/62-quorvel-by-bay.rules\" @ONLY)")
install(FILES ${CMAKE_BINARY_DIR}/62-quorvel-by-bay.rules DESTINATION lib/udev/rules.d)
install(FILES packaging/completion/libquorvel_bin DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES packaging/share/report.schema.json packaging/share/alerts.yml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/libquorvel_bin)
install(FILES packaging/systemd/libquorvel_bin-report.service packaging/systemd/libquorvel_bin-report.timer
    DESTINATION lib/systemd/system)
# Commands that scripts call by their own names; each link has its completion, and its manual page where pages are made.
if(disk IN_LIST QUORVEL_ROOMS)
    set(QUORVEL_LINKED_WORDS disk_signature disk_readerrorcnt)
endif()
foreach(word ${QUORVEL_LINKED_WORDS})
    foreach(suffix "" .1)
        file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/links)
        file(CREATE_LINK libquorvel_bin${suffix} ${CMAKE_BINARY_DIR}/links/${word}${suffix} SYMBOLIC)
    endforeach()
    install(FILES ${CMAKE_BINARY_DIR}/links/${word} DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES ${CMAKE_BINARY_DIR}/links/${word} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    if(SCDOC)
        install(FILES ${CMAKE_BINARY_DIR}/links/${word}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    endif()
endforeach()
if(SCDOC AND disk IN_LIST QUORVEL_ROOMS)
    file(CREATE_LINK diskpath.conf.5 ${CMAKE_BINARY_DIR}/links/extslot.conf.5 SYMBOLIC)
    install(FILES ${CMAKE_BINARY_DIR}/links/extslot.conf.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
endif()
install(FILES ${CMAKE_BINARY_DIR}/include/libquorvel_bin.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(header api ${QUORVEL_HEADERS})
    install(FILES include/quorvel/${header}.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quorvel)
endforeach()
install(EXPORT libquorvel_bin-targets NAMESPACE quorvel:: DESTINATION ${QUORVEL_CMAKE_DIR})

configure_package_config_file(cmake/libquorvel_bin-config.cmake.in
    ${CMAKE_BINARY_DIR}/libquorvel_bin-config.cmake INSTALL_DESTINATION ${QUORVEL_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/libquorvel_bin-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/libquorvel_bin-config.cmake
    ${CMAKE_BINARY_DIR}/libquorvel_bin-config-version.cmake DESTINATION ${QUORVEL_CMAKE_DIR})

# The prefix is what `cmake --install --prefix` says, known only then; pkg-config takes a blank in it for an end.
set(QUORVEL_PREFIX "@QUORVEL_PREFIX@")
configure_file(cmake/libquorvel_bin.pc.in ${CMAKE_BINARY_DIR}/libquorvel_bin.pc.in @ONLY)
install(CODE "string(REPLACE \" \" \"\\\\ \" QUORVEL_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
configure_file(\"${CMAKE_BINARY_DIR}/libquorvel_bin.pc.in\" \"${CMAKE_BINARY_DIR}/libquorvel_bin.pc\" @ONLY)")
install(FILES ${CMAKE_BINARY_DIR}/libquorvel_bin.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
