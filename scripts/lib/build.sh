# shellcheck shell=bash
# The builds that tests, checks and the demonstration use. Source after common.sh.

# Where ccache is installed, compilers' work is kept between builds, and shared between
# clones: their paths are no part of what it compares. QUORVEL_CCACHE=no does without.
use_ccache() {
    [[ ${QUORVEL_CCACHE:-yes} == yes ]] && have ccache || return 0
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
    export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$project_dir} CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}
    # What a precompiled header needs to be found again.
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros,include_file_mtime,include_file_ctime}
}

# Configures anew only when it is done otherwise than the last time; ninja notices changes
# of the CMake files.
configure() {
    local dir=$1 how="${*@Q} ${CC:-} ${CXX:-} ${CMAKE_CXX_COMPILER_LAUNCHER:-}"
    shift
    [[ ! -e $dir/build.ninja || ! -e $dir/configured || $(<"$dir/configured") != "$how" ]] || return 0
    rm -f "$dir/configured"
    cmake -S "$project_dir" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_COMPILE_WARNING_AS_ERROR=ON "$@" && printf '%s\n' "$how" >"$dir/configured"
}

# build_in NAME [CMAKE OPTIONS...]: configures and builds in the directory NAME the targets
# of build_targets, or all; a warning is an error. The log is shown when it fails. Two that
# build in the same place wait for each other.
build_targets=()
build_in() {
    local dir=$project_dir/$1 log targets=("${build_targets[@]/#/--target=}")
    shift
    mkdir -p "$dir"
    log=$dir/build.log
    say "building ${dir##*/}"
    (
        flock 9
        use_ccache
        configure "$dir" "$@" &&
            cmake --build "$dir" --parallel "${QUORVEL_JOBS:-$(nproc)}" "${targets[@]}"
    ) >"$log" 2>&1 9>"$dir/.lock" && return
    say "building ${dir##*/} failed:"
    tail -n 60 -- "$log" >&2
    return 1
}

build_plain() { build_in build; }
build_sanitized() { build_in build-asan -DQUORVEL_SANITIZE=ON; }
build_threads() {
    local build_targets=(threads)
    build_in build-threads -DQUORVEL_SANITIZE=thread
}
# Counters are written where the compiler was told that objects stand.
build_counting() { QUORVEL_CCACHE=no build_in build-coverage -DQUORVEL_COVERAGE=ON; }
# One build with clang: for its warnings, and for the fuzz targets.
build_with_clang() {
    CC=clang-14 CXX=clang++-14 build_in build-fuzz -DQUORVEL_FUZZ=ON -DQUORVEL_TESTS=OFF
}
