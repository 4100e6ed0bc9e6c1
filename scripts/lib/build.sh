# shellcheck shell=bash
# The builds that tests, checks and the demonstration use. Source after common.sh.

# build_in NAME [CMAKE OPTIONS...]: configures and builds in the directory NAME; a
# warning is an error. The log is shown when it fails.
build_in() {
    local dir=$project_dir/$1 log
    shift
    mkdir -p "$dir"
    log=$dir/build.log
    say "building ${dir##*/}"
    {
        cmake -S "$project_dir" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
            -DCMAKE_COMPILE_WARNING_AS_ERROR=ON "$@" &&
            cmake --build "$dir" --parallel "$(nproc)"
    } >"$log" 2>&1 && return
    say "building ${dir##*/} failed:"
    tail -n 60 -- "$log" >&2
    return 1
}

build_plain() { build_in build; }
build_sanitized() { build_in build-asan -DQUORVEL_SANITIZE=ON; }
build_counting() { build_in build-coverage -DQUORVEL_COVERAGE=ON; }
build_with_clang() {
    build_in build-clang -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 -DQUORVEL_TESTS=OFF
}
