# shellcheck shell=bash
# Counts results and closes with them. Source after common.sh.

passed=0 failed=0 skipped=0 failures=() gaps=()

pass() { ((passed += ${1:-1})) || true; }

fail() {
    ((++failed))
    failures+=("$1")
    say "FAILED: $1"
}

# What this place cannot offer; where everything must be there, a failure.
skip() {
    if [[ ${CI:-} == true ]]; then
        fail "$1 (not available here, and CI=true)"
        return
    fi
    ((++skipped))
    gaps+=("$1")
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
