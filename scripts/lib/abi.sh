# shellcheck shell=bash
# What programs that were linked earlier rely on, written down: abi/MACHINE.abi holds
# the exported names and the layout of all public types (libabigail's XML),
# abi/constants.txt the values of the public constants. Source after common.sh.

# Of the interface only, and without anything that an unchanged interface may change.
write_abi() {
    abidw --headers-dir include --exported-interfaces-only --drop-private-types --no-parameter-names \
        --no-corpus-path --no-show-locs --no-comp-dir-path --no-elf-needed --no-write-default-sizes \
        --type-id-style hash "$1" | sed "s,path='[^']*/\(src\|include\)/,path='\1/,"
}

# Prints "NAME VALUE" for every enumerator and every number among the macros.
write_constants() {
    local name names
    # The preprocessor takes the comments away.
    names=$(gcc -w -fpreprocessed -dD -E -P -x c - < <(cat include/quorvel/*.h) |
        sed -nE '/^enum /,/\}/{s/[{},]/\n/g;p}; /^#define [A-Z_0-9]+ [0-9]/p' |
        sed -nE 's/^ *([A-Z][A-Z_0-9]+)( *=.*)?$/\1/p; s/^#define ([A-Z_0-9]+) .*/\1/p')
    {
        echo '#include <libquorvel_bin.h>'
        echo 'int main(void) {'
        while read -r name; do printf 'printf("%%s %%lld\\n", "%s", (long long)%s);\n' "$name" "$name"; done <<<"$names"
        echo 'return 0; }'
    } | gcc -x c -std=c99 -Wall -Werror -Iinclude -o "$1/constants" - && "$1/constants"
}

abi_record=abi/$(uname -m).abi
constants_record=abi/constants.txt
