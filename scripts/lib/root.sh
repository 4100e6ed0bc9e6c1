# shellcheck shell=bash
# The disposable root: an empty machine with the host's programs, in which a
# test or a sample appliance may write any path it likes. Source after common.sh.
#
#   run_in_root [--net | --net-if-possible] PROGRAM [ARGUMENTS...]
#
# Inside, /etc /proc /sys /dev /sbin /usr/local /tmp /var/tmp /mnt /root /run are
# empty and writable, the host's /usr is read-only, the project is /source and its
# build directory /build (both also under their own absolute paths), the kernel's
# procfs is /realproc, and /.disposable-root marks the place. It is made with
# bubblewrap, or, where namespaces are refused and the user is root, as a chroot
# of copies; QUORVEL_ROOT_MODE=bwrap|chroot forces one. All that is written goes
# away with it, except below the build directory with QUORVEL_BUILD_BIND=--bind
# (bubblewrap only).
# shellcheck source=scripts/lib/root-chroot.sh
source "${BASH_SOURCE[0]%/*}/root-chroot.sh"

readonly root_path=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin
# The little of /etc that loading programs and looking up names need.
readonly root_etc=(ld.so.cache passwd group nsswitch.conf alternatives)

# The build directory a program belongs to: the nearest one above it that was
# configured, otherwise the plain build.
build_dir_of() {
    local dir=${1%/*}
    [[ -e $1 && $1 == */* ]] && dir=$(cd -- "$dir" && pwd -P) || dir=
    while [[ -n $dir && ! -e $dir/CMakeCache.txt ]]; do dir=${dir%/*}; done
    printf '%s\n' "${dir:-${QUORVEL_BUILD_DIR:-$project_dir/build}}"
}

# Whether bubblewrap makes a root here, with a network of its own when wanted;
# leaves the arguments for it in base. A container that refuses a new procfs still
# lets its own be shown.
bwrap_works() {
    local net=$1 proc
    have bwrap || return 1
    for proc in '--proc /realproc' '--ro-bind /proc /realproc'; do
        base=(--unshare-user --uid 0 --gid 0 --cap-add ALL --unshare-pid --unshare-ipc
            --unshare-uts --hostname appliance --die-with-parent
            --ro-bind /usr /usr --tmpfs /usr/local)
        # shellcheck disable=SC2206  # two or three words on purpose
        base+=($proc)
        [[ $net == no ]] || base+=(--unshare-net)
        if bwrap "${base[@]}" --symlink usr/lib /lib --symlink usr/lib64 /lib64 \
            --dev /dev /usr/bin/true 2>/dev/null; then return 0; fi
    done
    return 1
}

# What root inside keeps of its rights, as setpriv reads it: nothing that reaches beyond files, the network of its own, and
# processes of the same rights.
kept_rights() {
    local net=$1 kept=chown,dac_override,dac_read_search,fowner,fsetid,kill,setgid,setuid,sys_chroot
    [[ $net == no ]] || kept+=,net_admin,net_raw,net_bind_service
    printf '%s\n' "-all,+${kept//,/,+}"
}

# A model may be a stranger's. With all rights it would make what is shown writable; with the terminal it would type.
show_model_to() {
    local net=$1
    shift
    taker=("$@")
    [[ -n ${APPLIANCE_MODEL:-} ]] || return 0
    arguments+=(--new-session)
    taker=(/usr/bin/setpriv --inh-caps -all --ambient-caps -all --bounding-set "$(kept_rights "$net")" --
        /usr/bin/perl /source/scripts/lib/inside-model "$@")
}

run_in_bwrap() {
    local build=$1 net=$2 arguments=("${base[@]}") taker name dir
    shift 2
    for name in bin lib lib32 lib64 libx32; do
        [[ -e /usr/$name ]] && arguments+=(--symlink "usr/$name" "/$name")
    done
    for dir in sbin etc sys proc mnt root run tmp var/tmp var/lib; do arguments+=(--dir "/$dir"); done
    for dir in sys proc tmp; do arguments+=(--tmpfs "/$dir"); done
    for name in "${root_etc[@]}"; do
        [[ -e /etc/$name ]] && arguments+=(--ro-bind "/etc/$name" "/etc/$name")
    done
    arguments+=(--dev /dev --symlink /realproc/self /proc/self)
    arguments+=(--ro-bind "$project_dir" /source --ro-bind "$project_dir" "$project_dir")
    if [[ -d $build ]]; then
        arguments+=(--ro-bind "$build" /build "${QUORVEL_BUILD_BIND:---ro-bind}" "$build" "$build")
    fi
    # What accounts mount is mounted by tests; a model, which may be a stranger's, has nothing to mount with.
    [[ -n ${APPLIANCE_MODEL:-} ]] || arguments+=(--dev-bind-try /dev/fuse /dev/fuse)
    # A program from elsewhere comes along.
    [[ $1 != /* ]] || arguments+=(--ro-bind "$1" "$1")
    arguments+=(--file 3 /.disposable-root --chdir /)
    show_model_to "$net" "$@"
    env -i "${root_environment[@]}" bwrap "${arguments[@]}" \
        /bin/sh /source/scripts/lib/inside-root "${taker[@]}" 3</dev/null
}

# What goes in of the environment: the place's own settings, and the caller's
# knobs for the sanitizers and GoogleTest. The search order is the appliance's; a
# model finds the built programs first.
collect_environment() {
    local name
    root_environment=("PATH=${APPLIANCE_MODEL:+/build:}$root_path" HOME=/root LANG=C.UTF-8
        "TERM=${TERM:-dumb}" "APPLIANCE_NETWORK=$1")
    for name in $(compgen -e); do
        case $name in
            ASAN_OPTIONS | UBSAN_OPTIONS | LSAN_OPTIONS | GTEST_* | APPLIANCE_MODEL)
                root_environment+=("$name=${!name}") ;;
        esac
    done
}

# Chooses how a root is made here, with a network of its own when wanted: leaves
# bwrap or chroot in how, or nothing and fails.
choose_root() {
    local net=$1 mode=${QUORVEL_ROOT_MODE:-}
    how=
    if [[ $mode != chroot ]] && bwrap_works "$net"; then
        how=bwrap
    elif [[ $mode != bwrap && $EUID -eq 0 ]]; then
        if [[ $net == no ]] || unshare --net true 2>/dev/null; then how=chroot; fi
    fi
    [[ -n $how ]]
}

run_in_root() {
    local net=no how='' build root_environment base
    if [[ $1 == --net* ]]; then
        net=yes
        if ! choose_root yes && [[ $1 == --net-if-possible ]]; then net=no; fi
        shift
    fi
    if [[ -z $how ]] && ! choose_root "$net"; then
        say "no disposable root here (network of its own: $net): namespaces are refused"
        return "$cannot_offer"
    fi
    build=$(build_dir_of "$1")
    collect_environment "$net"
    "run_in_$how" "$build" "$net" "$@"
}
