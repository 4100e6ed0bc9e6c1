# Which rooms are built (QUORVEL_SUBSYSTEMS), and everything that follows from it: the version script, the umbrella
# header and the lists of headers and manual pages. An entry of a room that is left out does not exist: a program that
# uses it does not link.

# What each room stands on, beside foundation and platform, which are in every build (a word of the foundation's tells the
# firmware), and the public headers and pages it has when they are not its name's.
set(QUORVEL_ALL_ROOMS foundation platform net disk raid registry services hw)
set(QUORVEL_BELOW_disk net)
set(QUORVEL_BELOW_raid disk net)
set(QUORVEL_BELOW_services net)
set(QUORVEL_HEADERS_disk naming disk)

set(QUORVEL_ROOMS foundation platform)
foreach(room IN LISTS QUORVEL_SUBSYSTEMS)
    if(NOT room IN_LIST QUORVEL_ALL_ROOMS)
        message(FATAL_ERROR "QUORVEL_SUBSYSTEMS: no subsystem \"${room}\"; there are ${QUORVEL_ALL_ROOMS}")
    endif()
    list(APPEND QUORVEL_ROOMS ${room} ${QUORVEL_BELOW_${room}})
endforeach()
if(NOT QUORVEL_SUBSYSTEMS)
    set(QUORVEL_ROOMS ${QUORVEL_ALL_ROOMS})
endif()
list(REMOVE_DUPLICATES QUORVEL_ROOMS)
set(QUORVEL_LEFT_OUT ${QUORVEL_ALL_ROOMS})
list(REMOVE_ITEM QUORVEL_LEFT_OUT ${QUORVEL_ROOMS})

file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/rooms CONTENT "${QUORVEL_ROOMS}\n" @ONLY)

# Header names of rooms, in alphabetical order.
function(headers_of rooms result)
    set(headers "")
    foreach(room IN LISTS ${rooms})
        if(QUORVEL_HEADERS_${room})
            list(APPEND headers ${QUORVEL_HEADERS_${room}})
        else()
            list(APPEND headers ${room})
        endif()
    endforeach()
    list(SORT headers)
    set(${result} ${headers} PARENT_SCOPE)
endfunction()
headers_of(QUORVEL_ROOMS QUORVEL_HEADERS)
headers_of(QUORVEL_LEFT_OUT QUORVEL_HEADERS_LEFT_OUT)

# The version script without the names of the headers left out; in it "# HEADER" stands above each header's names.
set(QUORVEL_EXPORTS ${CMAKE_BINARY_DIR}/libquorvel_bin.map)
set(map ${CMAKE_SOURCE_DIR}/src/libquorvel_bin.map)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${map})
file(STRINGS ${map} lines)
set(script "")
set(names "")
set(header "")
foreach(line IN LISTS lines)
    if(line MATCHES "^ *# ([a-z]+)")
        set(header ${CMAKE_MATCH_1})
    elseif(line MATCHES "^ +([A-Za-z_0-9]+);")
        if(header IN_LIST QUORVEL_HEADERS_LEFT_OUT)
            continue()
        endif()
        string(APPEND names "${CMAKE_MATCH_1}\n")
    endif()
    if(NOT line MATCHES "^ *#")
        string(APPEND script "${line}\n")
    endif()
endforeach()
# A version may be left without a name, and must not announce any then.
string(REGEX REPLACE "global:\n(local:|})" "\\1" script "${script}")
file(CONFIGURE OUTPUT ${QUORVEL_EXPORTS} CONTENT "${script}" @ONLY)
set(QUORVEL_EXPORTED_NAMES ${CMAKE_BINARY_DIR}/exported_names)
file(CONFIGURE OUTPUT ${QUORVEL_EXPORTED_NAMES} CONTENT "${names}" @ONLY)

# The umbrella header without them.
file(READ ${CMAKE_SOURCE_DIR}/include/libquorvel_bin.h umbrella)
foreach(header IN LISTS QUORVEL_HEADERS_LEFT_OUT)
    string(REPLACE "#include \"quorvel/${header}.h\"\n" "" umbrella "${umbrella}")
endforeach()
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/include/libquorvel_bin.h CONTENT "${umbrella}" @ONLY)

# The sources below a directory that belong to no room left out, when each begins with a header's name and "_".
function(remove_left_out sources)
    set(kept ${${sources}})
    foreach(header IN LISTS QUORVEL_HEADERS_LEFT_OUT)
        list(FILTER kept EXCLUDE REGEX "/${header}s?_[^/]*$")
    endforeach()
    set(${sources} ${kept} PARENT_SCOPE)
endfunction()
