#!/bin/sh
# Fuzzes the walks and what is said of them against the oracle, and the readers of files and of sets
# of files, all at once:
#
#   scripts/fuzz.sh [SECONDS]                 60 seconds unless told; one line each sums them up
#   scripts/fuzz.sh --repeat walks|why|files|sets FILE runs one input again and shows what it finds
#   scripts/fuzz.sh --keep                    puts what is new into the kept corpora, minimised
#
# What was found lies in build/fuzz/findings, what was new in build/fuzz/new, both by name of the
# target. A finding ends the script with 1 and the tail of its log.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

# shellcheck disable=SC2086  # a list of words
require_packages $BUILD_PACKAGES clang
mkdir -p build
build_preset fuzz --target fuzz_walks fuzz_why fuzz_files fuzz_sets
programs=build/fuzz/tests/fuzz
corpora=tests/fuzz/corpus
new=build/fuzz/new
findings=build/fuzz/findings
mkdir -p "$new/walks" "$new/why" "$new/files" "$new/sets" "$findings"
# Half of the time goes to the stacks of allocations that nobody looks at.
export ASAN_OPTIONS="malloc_context_size=5:quarantine_size_mb=64:${ASAN_OPTIONS-}"
export UBSAN_OPTIONS="print_stacktrace=1:${UBSAN_OPTIONS-}"

# Small inputs: a walk of more steps, or a longer file, shows nothing new but takes longer.
length() {
    case $1 in
    files | sets) echo 8000 ;;
    *) echo 1200 ;;
    esac
}

case "${1-}" in
--repeat)
    exec "$programs/fuzz_$2" -timeout=20 -rss_limit_mb=2048 "$3"
    ;;
--keep)
    # Inputs that fuzzers name are named by 40 digits. Those that people name stay, and of the
    # others as few as reach every place: counting how often as well would keep thousands.
    hashes='.*/[0-9a-f]{40}'
    for target in walks why files sets; do
        kept=build/fuzz/kept-$target
        rm -rf "$kept"
        mkdir -p "$kept"
        find "$corpora/$target" -type f -regextype posix-extended ! -regex "$hashes" \
            -exec cp {} "$kept" \;
        "$programs/fuzz_$target" -merge=1 -use_counters=0 -max_len="$(length $target)" "$kept" \
            "$corpora/$target" "$new/$target" >"build/fuzz/keep-$target.log" 2>&1
        find "$corpora/$target" -type f -regextype posix-extended -regex "$hashes" -delete
        find "$kept" -type f -regextype posix-extended -regex "$hashes" \
            -exec cp {} "$corpora/$target" \;
        echo "$target: $(find "$corpora/$target" -type f | wc -l) inputs," \
            "$(du -s --apparent-size -B1024 "$corpora/$target" | cut -f1) KiB"
    done
    exit 0
    ;;
esac

seconds=${1-60}
# Without the entropic schedule, which takes more time than the inputs do.
#
# fuzz TARGET [OPTION...]
fuzz() {
    target=$1
    shift
    "$programs/fuzz_$target" -max_total_time="$seconds" -max_len="$(length "$target")" -timeout=20 \
        -rss_limit_mb=2048 -malloc_limit_mb=512 -entropic=0 -print_final_stats=1 \
        -artifact_prefix="$findings/$target-" "$@" "$new/$target" "$corpora/$target" \
        >"build/fuzz/$target.log" 2>&1
}
# figure TARGET NAME
figure() {
    sed -n "s/^stat::$2: *//p" "build/fuzz/$1.log"
}
# report TARGET STATUS
report() {
    log=build/fuzz/$1.log
    last=$(grep -E '^#[0-9]+[[:space:]]' "$log" | tail -n 1)
    echo "$1: $([ "$2" -eq 0 ] && echo passed || echo FAILED)," \
        "$(figure "$1" number_of_executed_units) executions," \
        "$(figure "$1" average_exec_per_sec) a second," \
        "$(echo "$last" | sed -E 's/.*(cov: [0-9]+ ft: [0-9]+ corp: [^ ]+).*/\1/')," \
        "$(figure "$1" peak_rss_mb) MB"
    [ "$2" -ne 0 ] || return 0
    tail -n 60 "$log"
    finding=$(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1)
    echo "The input: ${finding:-none was written; see $log}"
    [ -z "$finding" ] || echo "To repeat it: scripts/fuzz.sh --repeat $1 $finding"
    status=1
}

fuzz walks &
walks=$!
fuzz why &
why=$!
fuzz sets -dict=tests/fuzz/sets.dict &
sets=$!
files_status=0
fuzz files -dict=tests/fuzz/files.dict || files_status=$?
walks_status=0
wait $walks || walks_status=$?
why_status=0
wait $why || why_status=$?
sets_status=0
wait $sets || sets_status=$?
status=0
report walks $walks_status
report why $why_status
report files $files_status
report sets $sets_status
exit $status
