#!/bin/sh
# Measures what single choices of the engine and the model gain, by switching each off in a copy of
# the tree: scripts/gains.sh [--rounds N] [CHOICE...]
#
# The choices are the patches in benchmarks/switched_off: what each is, the rows that it concerns as
# options of walk-benchmarks, and the change that does without it. Prints the ratio to the
# hand-written loop with and without the choice; both are measured beside the loop in one run each, so
# the gain, with over without, bears a machine that is busy now and then. Below 1 the choice gains.
#
# scripts/gains.sh --check says which patches fit the sources no longer, and measures nothing.
set -eu
cd "$(dirname "$0")/.."

patches=benchmarks/switched_off

if [ "${1:-}" = --check ]; then
    stale=0
    for patch in "$patches"/*.patch; do
        git apply --check "$patch" || {
            echo "stale: $patch" >&2
            stale=1
        }
    done
    exit "$stale"
fi

rounds=5
if [ "${1:-}" = --rounds ]; then
    rounds=$2
    shift 2
fi
# shellcheck disable=SC2046  # a list of names
[ $# -gt 0 ] || set -- $(cd "$patches" && ls -- *.patch)

work=build/gains
tree=$work/tree
mkdir -p "$tree"

# What is built is the tree as it stands, local changes included. Only files that differ are copied, so
# that a second run compiles little, and one that was stopped is repaired.
git ls-files --cached --others --exclude-standard |
    while read -r file; do
        [ -f "$file" ] || continue
        cmp -s "$file" "$tree/$file" && continue
        mkdir -p "$tree/$(dirname "$file")"
        cp "$file" "$tree/$file"
    done

# build NAME: builds the copy, and keeps the program and its libraries under that name.
build() {
    cmake --build "$work/build" --parallel "$(nproc)" --target walk-benchmarks >"$work/$1.log" 2>&1 || {
        tail -n 40 "$work/$1.log" >&2
        exit 1
    }
    mkdir -p "$work/$1"
    find "$work/build" -name 'walk-benchmarks' -type f -exec cp {} "$work/$1" \;
    find "$work/build" -name 'libmodeling_nuv0_*.so*' -exec cp -P {} "$work/$1" \;
}

# measure NAME OPTION...: a line "shape, kind, order;ratio" per row.
measure() {
    name=$1
    shift
    LD_LIBRARY_PATH="$work/$name" "$work/$name/walk-benchmarks" --section walks --rounds "$rounds" \
        "$@" 2>"$work/$name.err" | tr -d '*' |
        awk -F ' *[|] *' '$2 != "shape" && $6 ~ /^[0-9.]+$/ { print $2 ", " $3 ", " $4 ";" $6 }'
}

cmake --preset release -S "$tree" -B "$work/build" -DMODELING_NUV0_BUILD_BENCHMARKS=ON \
    -DMODELING_NUV0_BUILD_TESTS=OFF -DMODELING_NUV0_BUILD_EXAMPLES=OFF \
    -DMODELING_NUV0_BUILD_TOOLS=OFF >"$work/configure.log" 2>&1 || {
    cat "$work/configure.log" >&2
    exit 1
}
build with

echo "| choice | walk | with | without | gain |"
echo "|---|---|--:|--:|--:|"
for choice in "$@"; do
    patch=$patches/$(basename "$choice" .patch).patch
    rows=$(sed -n 's/^rows: //p' "$patch")
    git apply --directory="$tree" "$patch"
    build without
    git apply --reverse --directory="$tree" "$patch"
    # shellcheck disable=SC2086  # a list of options
    measure with $rows >"$work/with.rows"
    # shellcheck disable=SC2086
    measure without $rows >"$work/without.rows"
    awk -F ';' -v choice="$(basename "$patch" .patch | tr _ ' ')" '
        NR == FNR { with[$1] = $2; next }
        { printf "| %s | %s | %.2f | %.2f | %.2f |\n", choice, $1, with[$1], $2, with[$1] / $2 }
    ' "$work/with.rows" "$work/without.rows"
done
