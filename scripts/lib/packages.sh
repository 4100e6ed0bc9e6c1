# shellcheck shell=bash
# The packages of packages.txt, installed where they are missing. Source after
# common.sh.

packages_of() {
    local groups=$1
    sed -nE "s/^($groups) +//p" "$project_dir/scripts/lib/packages.txt" | sort -u
}

# Prints those of the given packages that are not installed, nor what stands in for them.
missing_among() {
    local names
    for names in "$@"; do
        # dpkg-query fails when it knows one of them not at all.
        # shellcheck disable=SC2086  # a package and those that stand in for it
        grep -qx installed < <(dpkg-query -W -f '${db:Status-Status}\n' ${names//|/ } 2>/dev/null) ||
            printf '%s\n' "${names%%|*}"
    done
}

# Prints the packages of the given groups that are not installed.
missing_packages() {
    local names
    mapfile -t names < <(packages_of "$1")
    missing_among "${names[@]}"
}

# Those of the given packages that this release has.
offered_among() {
    local name
    for name in "$@"; do
        if apt-cache show -q -- "$name" >/dev/null 2>&1; then printf '%s\n' "$name"; else say "not in this release: $name"; fi
    done
}

# Installs those of the given packages that are missing by now; another clone may just have installed them.
install_in_turn() {
    local missing offered as_root=()
    mapfile -t missing < <(missing_among "$@")
    ((${#missing[@]})) || return 0
    say "installing: ${missing[*]}"
    ((EUID == 0)) || ! have sudo || as_root=(sudo -n)
    "${as_root[@]}" apt-get update -q >&2 || say "no lists of packages (no network, or not root)"
    mapfile -t offered < <(offered_among "${missing[@]}")
    ((${#offered[@]} == 0)) || "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -qy --no-install-recommends -o DPkg::Lock::Timeout=600 "${offered[@]}" >&2 ||
        say "could not install: ${offered[*]} (no network, or not root)"
}

# Asks the network only when something is missing, and goes on without what is not to be had.
install_packages() {
    have dpkg-query || { say "not a Debian system: packages are not looked at" && return; }
    [[ -n $(missing_among "$@") ]] || return 0
    # What packages start must not keep the turn.
    (flock 9 && install_in_turn "$@" 9<&-) 9</var/lib/dpkg
}

# install_missing_packages GROUP...: fails only when what is still missing then is needed to build.
install_missing_packages() {
    local missing=() names groups
    groups=$(IFS="|" && echo "$*")
    mapfile -t names < <(packages_of "$groups")
    install_packages "${names[@]}"
    ! have dpkg-query || mapfile -t missing < <(missing_packages build)
    ((${#missing[@]} == 0)) || die "cannot build without: ${missing[*]}"
}
