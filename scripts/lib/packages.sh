# shellcheck shell=bash
# The packages of packages.txt, installed where they are missing. Source after
# common.sh.

packages_of() {
    local groups=$1
    sed -nE "s/^($groups) +//p" "$project_dir/scripts/lib/packages.txt"
}

# Prints the packages of the given groups that are not installed.
missing_packages() {
    local name
    for name in $(packages_of "$1"); do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null) == installed ]] || printf '%s\n' "$name"
    done
}

# install_missing_packages GROUP...: asks the network only when something is missing;
# fails only when what is still missing then is needed to build.
install_missing_packages() {
    local missing groups as_root=()
    groups=$(IFS="|" && echo "$*")
    have dpkg-query || { say "not a Debian system: packages are not looked at" && return; }
    mapfile -t missing < <(missing_packages "$groups")
    ((${#missing[@]})) || return 0
    say "installing: ${missing[*]}"
    ((EUID == 0)) || ! have sudo || as_root=(sudo -n)
    { "${as_root[@]}" apt-get update -q &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -qy --no-install-recommends "${missing[@]}"; } >&2 ||
        say "could not install: ${missing[*]} (no network, or not root)"
    mapfile -t missing < <(missing_packages build)
    ((${#missing[@]} == 0)) || die "cannot build without: ${missing[*]}"
}
