# shellcheck shell=bash
# What every check starts from. A check fails by its exit status; everything it
# prints is shown then. Source after setting -euo pipefail.
# shellcheck source=scripts/lib/common.sh
source "${BASH_SOURCE[0]%/*}/common.sh"
cd "$project_dir"

# Ends the check as not to be had here when a tool is missing.
need() {
    local tool
    for tool in "$@"; do
        have "$tool" || { echo "no $tool here" && exit "$cannot_offer"; }
    done
}

# Ends the check when a list of findings is not empty.
no_findings() {
    local what=$1 findings=$2
    [[ -z $findings ]] || { printf '%s:\n%s\n' "$what" "$findings" && exit 1; }
}

# The build that is looked at.
build_dir=${QUORVEL_BUILD_DIR:-build}
# shellcheck disable=SC2034  # used by checks
shared_library=$build_dir/libquorvel_bin.so

# The exported names as the version script of the build lists them.
listed_exports() { sort "$build_dir/exported_names"; }

# The commands that --help lists, and their long options as "COMMAND --OPTION".
listed_commands() { "$build_dir"/libquorvel_bin --help | sed -n 's/^  \([a-z][a-z0-9_]*\) .*/\1/p' | sort -u; }
listed_options() {
    "$build_dir"/libquorvel_bin --help | grep '^  [a-z]' | while read -r word rest; do
        grep -oE '(^|[[| ])--[a-z][a-z-]*' <<<"$rest" | sed "s/.*--/$word --/" || true
    done
}

# The project's own C++ files below the given places.
sources_in() { find "$@" -name '*.cpp' -o -name '*.h' | sort; }
