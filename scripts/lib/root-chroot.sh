# shellcheck shell=bash
# The disposable root as a chroot of copies, for containers that refuse
# namespaces to root. There is no procfs in it. Sourced by root.sh.

# Copied where the host has them: what the library runs, and what tests and
# stand-in tools are written with.
readonly chroot_programs=(
    sh bash env true false cat cp mv rm ls ln mkdir rmdir mkfifo mknod chmod chown touch
    stat readlink realpath basename dirname echo printf head tail cut sort uniq tr wc tee
    seq sleep date expr test dd df od sync truncate id uname timeout kill mktemp cmp diff iconv
    grep sed awk perl find xargs strace ip iptables mount umount mdadm parted fdisk smartctl
    openssl nslookup jq fallocate)

# A place for the copies where device nodes work.
make_chroot_dir() {
    local place
    for place in "${TMPDIR:-/tmp}" /var/tmp /root; do
        root=$(mktemp -d "$place/disposable-root.XXXXXX") || continue
        mkdir "$root/dev"
        cp -a /dev/{null,zero,full,random,urandom} "$root/dev" 2>/dev/null || true
        # Not a file that this very test would make.
        if [[ -c $root/dev/null ]] && : 2>/dev/null >"$root/dev/null"; then return 0; fi
        rm -rf -- "$root"
    done
    die "no place where device nodes can be made"
}

# Prints the libraries that programs load. The status of ldd tells of scripts among
# them, which load nothing.
list_libraries() {
    { ldd "$@" 2>/dev/null || true; } | sed -nE 's/^.*[[:space:]](\/[^ ]+) \(0x.*$/\1/p' |
        sed -E 's,^/(bin|lib[0-9x]*)/,/usr/\1/,'
}

# Prints the programs to copy and the libraries they load.
list_chroot_programs() {
    local name programs
    mapfile -t programs < <(for name in "${chroot_programs[@]}"; do
        PATH=/usr/sbin:/usr/bin type -P "$name" || true
    done)
    programs+=("$@")
    printf '%s\n' "${programs[@]}"
    list_libraries "${programs[@]}"
}

# Prints the modules that libraries load when asked, and the locale.
list_chroot_modules() {
    local name
    for name in /usr/lib/*-linux-gnu*/{gconv,xtables,ossl-modules} /usr/lib/locale/C.utf8; do
        [[ ! -d $name ]] || find "$name" -type f
    done
    printf '%s\n' /usr/lib/*-linux-gnu*/perl-base/{strict,warnings}.pm
}

fill_chroot() {
    local build=$1 program=$2 name own=() files more
    chmod 755 "$root"
    mkdir -p "$root"/{usr/{bin,sbin,lib,lib64,local},sbin,sys,proc,mnt,root,run,etc} \
        "$root"/{tmp,var/tmp,var/lib,dev/shm,dev/pts}
    chmod 1777 "$root/tmp" "$root/var/tmp"
    for name in bin lib lib64; do ln -s "usr/$name" "$root/$name"; done
    for name in "${root_etc[@]}"; do
        [[ ! -e /etc/$name ]] || cp -a "/etc/$name" "$root/etc"
    done
    : >"$root/.disposable-root"
    if [[ $program == /* ]]; then own=("$program"); fi
    for name in "$build"/libquorvel_bin*; do [[ -f $name ]] && own+=("$name"); done
    mapfile -t files < <({ list_chroot_programs "${own[@]}"; list_chroot_modules; } | sort -u)
    # What an emulated program needs, a line each; elsewhere it is found in place.
    more=()
    [[ -z ${QUORVEL_ROOT_FILES:-} ]] || mapfile -t more <<<"$QUORVEL_ROOT_FILES"
    cp -L --parents -t "$root" -- "${files[@]}" "${more[@]}"
    mkdir -p "$root$project_dir"
    cp -a -t "$root$project_dir" -- "$project_dir"/{scripts,models,tests,fuzz,examples}
    ln -s "$project_dir" "$root/source"
    [[ ! -d $root$build ]] || ln -s "$build" "$root/build"
}

# Root outside is root inside here, so all rights that reach beyond files are
# given up where the place allows giving up.
confine() {
    confined=(setpriv --bounding-set "$(kept_rights "$net")" --)
    "${confined[@]}" true 2>/dev/null || confined=()
}

run_in_chroot() (
    build=$1 net=$2
    shift 2
    isolated=()
    if [[ $net == yes ]]; then
        isolated=(unshare --net)
        "${isolated[@]}" true 2>/dev/null || exit "$cannot_offer"
        # shellcheck disable=SC2016  # expanded by the inner shell
        isolated+=(sh -c 'ip link set lo up && exec "$@"' sh)
    fi
    root=
    trap '[[ -z $root ]] || rm -rf --one-file-system -- "$root"' EXIT
    make_chroot_dir
    fill_chroot "$build" "$1"
    confine
    [[ -z ${APPLIANCE_MODEL:-} ]] || set -- /usr/bin/perl /source/scripts/lib/inside-model "$@"
    # Without procfs the loader does not know where a program came from.
    env -i "${root_environment[@]}" "LD_LIBRARY_PATH=$build" "${isolated[@]}" "${confined[@]}" \
        chroot "$root" /bin/sh /source/scripts/lib/inside-root "$@"
)
