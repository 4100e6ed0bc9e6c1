# shellcheck shell=bash
# What programs that were linked earlier rely on, written down: abi/MACHINE.abi holds
# the exported names and the layout of all public types (libabigail's XML),
# abi/constants.txt the values of the public constants. Source after common.sh.

# Of the interface only, and without anything that an unchanged interface may change: abidw lists the sources by where
# they were compiled, which may be another clone (use_ccache), and each type with the first source that uses it. All of
# them become one, sorted.
write_abi() {
    abidw --headers-dir include --exported-interfaces-only --drop-private-types --no-parameter-names \
        --no-corpus-path --no-show-locs --no-comp-dir-path --no-elf-needed --no-write-default-sizes \
        --type-id-style hash "$1" | awk '
        /^  <abi-instr/ { inside = 1; sub(/ path=\047[^\047]*\047/, " path=\047src\047"); head = $0; next }
        /^  <\/abi-instr>/ { inside = 0; foot = $0; next }
        /^<\/abi-corpus>/ { print head; fflush(); close(sort); print foot }
        !inside { print; fflush(); next }
        { block = block $0 "\001" }
        /^    <\/|^    <[^ ].*\/>$/ { print block | sort; block = "" }' sort='LC_ALL=C sort -u | tr -s "\001" "\n" | grep .'
}

# Prints "NAME VALUE" for every enumerator and every number among the macros.
write_constants() {
    local name names
    # The preprocessor takes the comments away; its own macros begin with an underscore.
    names=$(cc -w -dD -E -P -x c - < <(grep -hv '^#include' include/quorvel/*.h) |
        sed -nE '/^enum /,/\}/{s/[{},]/\n/g;p}; /^#define [A-Z][A-Z_0-9]+ [0-9]/p' |
        sed -nE 's/^ *([A-Z][A-Z_0-9]+)( *=.*)?$/\1/p; s/^#define ([A-Z_0-9]+) .*/\1/p')
    {
        echo '#include <libquorvel_bin.h>'
        echo 'int main(void) {'
        while read -r name; do printf 'printf("%%s %%lld\\n", "%s", (long long)%s);\n' "$name" "$name"; done <<<"$names"
        echo 'return 0; }'
    } | cc -x c -std=c99 -Wall -Werror -Iinclude -o "$1/constants" - && "$1/constants"
}

abi_record=abi/$(uname -m).abi
constants_record=abi/constants.txt

# What abidiff shall not report: the names of subsystems that this build leaves out, and what another C library has in the
# types that are its own.
expected_differences() {
    printf '[suppress_type]\n  name = _IO_FILE\n'
    comm -23 <(sed -nE 's/^ +([A-Za-z_0-9]+);.*/\1/p' src/libquorvel_bin.map | sort) <(listed_exports) |
        sed 's/.*/[suppress_function]\n  symbol_name = &\n[suppress_variable]\n  symbol_name = &/'
}

# What differs from the record in the interface written in directory $1, behind the options of abidiff:
# everything, or with --no-added-syms what programs linked earlier would trip over.
interface_changes() {
    local now=$1 report
    shift
    expected_differences >"$now/expected"
    report=$(abidiff --harmless --suppressions "$now/expected" "$@" "$abi_record" "$now/library.abi") ||
        printf '%s\n' "$report"
}

# The same of the constants; "<" in front of what is recorded and gone or otherwise, ">" of what is new.
constant_changes() { diff "$constants_record" "$1/constants.txt" | grep '^[<>]' || true; }

# What programs linked earlier would trip over: a name that is gone or has another version, size or layout, a
# constant that is gone or has another value.
breaking_changes() {
    interface_changes "$1" --no-added-syms
    constant_changes "$1" | grep '^<' || true
}

# Writes the interface of a library, and what belongs to it, into a directory.
write_interface() {
    write_abi "$1" >"$2/library.abi"
    grep -q '<function-decl' "$2/library.abi" || { echo "no debug information in $1" && exit 1; }
    write_constants "$2" >"$2/constants.txt"
}
