# shellcheck shell=bash
# The machine that is booted: a tree with the command, this machine's programs and its newest
# kernel's drivers. Source after common.sh and root.sh.

# Leaves the newest kernel here in kernel, or ends as not to be had here.
find_kernel() {
    have qemu-system-x86_64 || { say "no qemu-system-x86_64 here" && exit "$cannot_offer"; }
    kernel=$(find /boot -name 'vmlinuz-*' -printf '%f\n' | sort -V | sed -n '$s/^vmlinuz-//p')
    [[ -n $kernel ]] || { say "no kernel in /boot" && exit "$cannot_offer"; }
}

# Prints the files of the modules in the order in which they load.
list_modules() {
    local driver
    for driver in "${drivers[@]}"; do modprobe -S "$kernel" --show-depends "$driver"; done |
        awk '$1 == "insmod" && !seen[$2]++ { print $2 }'
}

# make_tree BUILD TREE INIT: everything but the settings of the appliance. Takes the arrays programs and drivers.
make_tree() {
    local build=$1 tree=$2 name files modules
    mkdir -p "$tree"/{usr/{bin,sbin,lib,lib64,local/sbin},dev,proc,sys,tmp,mnt/array1,root,run,etc}
    for name in bin sbin lib lib64; do ln -s "usr/$name" "$tree/$name"; done
    ln -s bash "$tree/bin/sh"
    mapfile -t files < <(for name in "${programs[@]}"; do type -P "$name"; done)
    mapfile -t modules < <(list_modules)
    mapfile -t files < <({ printf '%s\n' "${files[@]}"; list_libraries "${files[@]}"
        find /usr/lib/*-linux-gnu*/xtables -type f; } | sort -u)
    cp -L --parents -t "$tree" -- "${files[@]}" "${modules[@]}"
    printf '%s\n' "${modules[@]}" >"$tree/modules"
    DESTDIR=$tree cmake --install "$build" --prefix /usr >/dev/null
    cp -a "$project_dir/tests/vm" "$tree"
    ln -s "vm/$3" "$tree/init"
}

pack_tree() { (cd "$1" && find . | cpio --quiet -o -H newc -R 0:0) >"$2"; }
