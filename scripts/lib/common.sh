# shellcheck shell=bash
# What every script here starts from: where the project is and how it speaks.

# The nearest directory at or above this file's that holds the project.
project_dir=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)

# Exit status with which a script says "this place cannot offer it", as test
# harnesses commonly read it.
# shellcheck disable=SC2034  # used by the scripts that source this file
readonly cannot_offer=77

say() { printf '%s\n' "$*" >&2; }

die() {
    say "${0##*/}: $*"
    exit 1
}

have() { command -v "$1" >/dev/null 2>&1; }
