# shellcheck shell=bash
# Runs jobs side by side, in the order they were added, and tells what each took. Source
# after common.sh and results.sh.
#
# A job takes as many cores as its width says (QUORVEL_JOBS inside), so that two heavy ones
# leave room for each other; one of width 0 mostly waits, and is in nobody's way. What a job
# says is shown when it ends with a failure or a gap.

job_names=() job_widths=() job_calls=()
cores=$(nproc)
# What a heavy job gets: half of the cores, so that two of them run on any machine.
# shellcheck disable=SC2034  # used by the scripts that add jobs
readonly wide=$(((cores + 1) / 2))

# add_job WIDTH NAME FUNCTION [WORD...]
add_job() {
    job_widths+=("$1") job_names+=("$2")
    shift 2
    job_calls+=("$*")
}

# Counts and names leave a job through a file, however the job ends.
write_results() {
    echo "pass $passed"
    ((!failed)) || printf 'fail %s\n' "${failures[@]}"
    ((!skipped)) || printf 'skip %s\n' "${gaps[@]}"
}

start_job() {
    local place=$jobs_place/$1
    (
        start_counting
        trap 'write_results >"$place.results"' EXIT
        export QUORVEL_JOBS=$((job_widths[$1] ? job_widths[$1] : 1))
        # shellcheck disable=SC2086  # a function and its words
        ${job_calls[$1]}
        : >"$place.ended"
    ) >"$place.log" 2>&1 &
    running[$!]=$1
    job_started[$1]=$SECONDS
    ((free -= job_widths[$1])) || true
}

# Adds a job's results to ours and prints its line.
end_job() {
    local place=$jobs_place/$1 what name verdict=ok
    [[ -e $place.ended ]] || echo "fail ${job_names[$1]}: ended before its time" >>"$place.results"
    while read -r what name; do
        case $what in
            pass) pass "$name" ;;
            fail) add_failure "$name" && verdict=FAILED ;;
            skip) add_gap "$name" ;;
        esac
    done <"$place.results"
    if [[ $verdict == ok ]]; then grep '^skipped: ' "$place.log" || true; else cat -- "$place.log"; fi >&2
    say "$(printf '%-6s %-24s %4d s' "$verdict" "${job_names[$1]}" $((SECONDS - job_started[$1])))"
    ((free += job_widths[$1])) || true
}

# Runs all that was added.
run_jobs() {
    local free=$cores next=0 pid jobs_place begun=$SECONDS
    local -A running=() job_started=()
    jobs_place=$(mktemp -d)
    while ((next < ${#job_names[@]} || ${#running[@]})); do
        while ((next < ${#job_names[@]} && (job_widths[next] <= free || ${#running[@]} == 0))); do
            start_job "$next"
            ((++next))
        done
        wait -n -p pid "${!running[@]}" || true
        end_job "${running[$pid]}"
        unset "running[$pid]"
    done
    rm -rf -- "$jobs_place"
    say "$(printf '%-31s %4d s' together $((SECONDS - begun)))"
}
