# shellcheck shell=bash
# Runs GoogleTest programs in disposable roots and counts their cases. Source after
# common.sh and results.sh.

# What runs the programs of another kind of machine, where they are such.
test_runner=()

# Prints the full names of the cases that ended with the given word in a log.
cases_in() {
    grep -oP "\[ *\Q$1\E *\] \K[^ ,]+(?=[ ,].*ms\)\$)" "$2" || true
}

run_test_program() {
    local label=$1 program=$2 options=(--net-if-possible) log status=0 planned ok name bad
    [[ ${program##*/} != net*_test ]] || options=(--net)
    log=$(mktemp)
    "$project_dir/tests/run-in-root" "${options[@]}" -- "${test_runner[@]}" "$program" --gtest_color=no >"$log" 2>&1 || status=$?
    if ((status == cannot_offer)) && ! grep -q '^\[==========\]' "$log"; then
        skip "$label: $(tail -n 1 "$log")"
        rm -f "$log"
        return
    fi
    planned=$(grep -oPm1 '^\[==========\] Running \K[0-9]+' "$log" || echo 0)
    ok=$(cases_in OK "$log" | wc -l)
    pass "$ok"
    for name in $(cases_in SKIPPED "$log"); do
        skip "$label: $name"
        ((++ok))
    done
    mapfile -t bad < <(cases_in FAILED "$log")
    # Cases that never ended, an end with an error of its own, or nothing run at all.
    if ((ok + ${#bad[@]} < planned || planned == 0 || (status != 0 && ${#bad[@]} == 0))); then
        bad+=("ended with status $status after $ok of $planned cases")
    fi
    for name in ${bad[@]+"${bad[@]}"}; do fail "$label: $name"; done
    if ((${#bad[@]})); then grep -vE '^\[( +(OK|RUN) +|-+|=+)\]' "$log" >&2 || true; fi
    rm -f "$log"
}

# All test programs of a build directory.
run_test_programs() {
    local dir=$1 program found=no
    for program in "$project_dir/$dir"/tests/*_test; do
        [[ -x $program ]] || continue
        found=yes
        run_test_program "$dir/${program##*/}" "$program"
    done
    [[ $found == yes ]] || fail "$dir: no test programs"
}
