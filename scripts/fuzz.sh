#!/bin/sh
# Fuzzes the walks against the oracle and the readers, both at once: scripts/fuzz.sh [SECONDS]
#
# New inputs go to build/fuzz/new; scripts/fuzz.sh --keep merges them into the kept corpora.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

# shellcheck disable=SC2086  # a list of words
require_packages $BUILD_PACKAGES clang
mkdir -p build
build_preset fuzz --target fuzz_walks fuzz_files
programs=build/fuzz/tests/fuzz
corpora=tests/fuzz/corpus
new=build/fuzz/new
mkdir -p "$new/walks" "$new/files" build/fuzz/findings

if [ "${1-}" = --keep ]; then
    for corpus in walks files; do
        "$programs/fuzz_$corpus" -merge=1 "$corpora/$corpus" "$new/$corpus"
    done
    exit 0
fi

seconds=${1-60}
# fuzz CORPUS LENGTH
fuzz() {
    "$programs/fuzz_$1" -max_total_time="$seconds" -max_len="$2" -timeout=20 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="build/fuzz/findings/$1-" \
        "$new/$1" "$corpora/$1" >"build/fuzz/$1.log" 2>&1
}
fuzz walks 600 &
walks=$!
status=0
fuzz files 8000 || status=1
wait $walks || status=1
for corpus in walks files; do
    echo "$corpus: $(grep -E 'number_of_executed_units|average_exec_per_sec' "build/fuzz/$corpus.log" |
        tr '\n' ' ')"
    [ "$status" -eq 0 ] || tail -n 40 "build/fuzz/$corpus.log"
done
exit $status
