# shellcheck shell=bash
# The sample appliances in models/. Source after common.sh.

model_names() {
    local path
    for path in "$project_dir"/models/*/links.txt; do basename -- "${path%/*}"; done
}

list_models() {
    local name
    for name in $(model_names); do
        printf '%-16s %s\n' "$name" "$(head -n 1 "$project_dir/models/$name/model.txt" | tr -cd '[:print:]')"
    done
}

# The model that a name or the beginning of one means.
find_model() {
    local name found=()
    for name in $(model_names); do
        [[ $name != "$1" ]] || { printf '%s\n' "$name" && return; }
        [[ $name != "$1"* ]] || found+=("$name")
    done
    ((${#found[@]} == 1)) || die "no such model, or not one only: $1 (scripts/appliance --list)"
    printf '%s\n' "${found[0]}"
}
