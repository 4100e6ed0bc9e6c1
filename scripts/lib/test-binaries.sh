# shellcheck shell=bash
# Runs GoogleTest programs in disposable roots and counts their cases. Source after
# common.sh and results.sh.

# What runs the programs of another kind of machine, where they are such.
test_runner=()

# Prints the full names of the cases that ended with the given word in a log.
cases_in() {
    grep -oP "\[ *\Q$1\E *\] \K[^ ,]+(?=[ ,].*ms\)\$)" "$2" || true
}

# Runs a program; what it says goes to LOG, how it ends to LOG.status.
run_test_program() {
    local program=$1 log=$2 options=(--net-if-possible) status=0
    [[ ${program##*/} != net*_test ]] || options=(--net)
    "$project_dir/tests/run-in-root" "${options[@]}" -- "${test_runner[@]}" "$program" --gtest_color=no >"$log" 2>&1 || status=$?
    echo "$status" >"$log.status"
}

count_cases() {
    local label=$1 log=$2 status planned ok name bad
    status=$(<"$log.status")
    if ((status == cannot_offer)) && ! grep -q '^\[==========\]' "$log"; then
        skip "$label: $(tail -n 1 "$log")"
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
}

# All test programs of a build directory, two at a time: some of their cases wait.
run_test_programs() {
    local dir=$1 program programs=() logs
    logs=$(mktemp -d)
    for program in "$project_dir/$dir"/tests/*_test; do
        [[ -x $program ]] || continue
        programs+=("${program##*/}")
        ((${#programs[@]} <= 2)) || wait -n
        run_test_program "$program" "$logs/${program##*/}" &
    done
    wait
    for program in "${programs[@]}"; do count_cases "$dir/$program" "$logs/$program"; done
    ((${#programs[@]})) || fail "$dir: no test programs"
    rm -r -- "$logs"
}
