# shellcheck shell=bash
# Counts results and closes with them. Source after common.sh.

start_counting() { passed=0 failed=0 skipped=0 failures=() gaps=(); }
start_counting

pass() { ((passed += ${1:-1})) || true; }

add_failure() { failures+=("$1") && ((++failed)); }
add_gap() { gaps+=("$1") && ((++skipped)); }

fail() {
    add_failure "$1"
    say "FAILED: $1"
}

# What this place cannot offer; where everything must be there, a failure.
skip() {
    if [[ ${CI:-} == true ]]; then
        fail "$1 (not available here, and CI=true)"
        return
    fi
    add_gap "$1"
    say "skipped: $1"
}

# Names what failed and what was skipped, prints the closing line, and ends.
finish() {
    ((!skipped)) || printf 'skipped: %s\n' "${gaps[@]}"
    ((!failed)) || printf 'FAILED: %s\n' "${failures[@]}"
    printf '%d passed, %d failed' "$passed" "$failed"
    ((!skipped)) || printf ', %d skipped' "$skipped"
    printf '\n'
    exit $((failed > 0))
}
