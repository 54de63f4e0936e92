#!/bin/sh
# Runs the whole suite as others may build it: scripts/modes.sh [MODE]...
#
#   libcxx     clang and its own standard library
#   debug-stl  the checking mode of libstdc++
#   m32        32 bits; without the reader, which needs a 32-bit expat
#   valgrind   the optimised test programs, each once, under valgrind
#
# All of them, one after the other, unless told. The first three are presets too.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

# in_preset PRESET PACKAGE...
in_preset() {
    preset=$1
    shift
    # shellcheck disable=SC2086  # a list of words
    require_packages $BUILD_PACKAGES "$@"
    build_preset "$preset"
    ctest --preset "$preset" --output-log "build/$preset-test.log" >/dev/null || {
        cat "build/$preset-test.log"
        return 1
    }
    grep 'tests passed' "build/$preset-test.log"
}

# checked PROGRAM [ARGUMENT]...: runs it; what valgrind finds ends the script. A program that replaces
# allocation functions keeps its own.
checked() {
    echo "$*"
    valgrind --quiet --leak-check=full --errors-for-leak-kinds=definite,possible \
        --soname-synonyms=somalloc=nouserintercepts --error-exitcode=9 "$@" >build/valgrind.log 2>&1 || {
        tail -n 60 build/valgrind.log
        return 1
    }
}

under_valgrind() {
    # shellcheck disable=SC2086  # a list of words
    require_packages $BUILD_PACKAGES valgrind
    build_preset release
    # Each step takes fifty times as long, so fewer of the random cases; deep and wide models, which
    # only repeat what small ones do, are left out.
    export MODELING_NUV0_ORACLE_CASES=300
    for program in build/release/tests/*/*_tests; do
        case $program in
        *_depth_tests) ;;
        *) checked "$program" --gtest_brief=1 --gtest_filter='-*OfMillions*' ;;
        esac
    done
    for scenario in tests/scenario/cases/*.scn; do
        checked build/release/tests/scenario/scenario-runner --check "$scenario"
    done
    for replay in walks files sets; do
        checked "build/release/tests/fuzz/fuzz_${replay}_replay" "tests/fuzz/corpus/$replay"
    done
    checked build/release/tools/model-walk/model-walk contents -m examples/models/system.ecore \
        examples/models/drone.xmi
    echo "Nothing found"
}

mkdir -p build
[ $# -gt 0 ] || set -- libcxx debug-stl m32 valgrind
for mode in "$@"; do
    echo "== $mode"
    case $mode in
    libcxx) in_preset libcxx clang libc++-dev libc++abi-dev googletest ;;
    debug-stl) in_preset debug-stl googletest ;;
    m32) in_preset m32 g++-multilib googletest ;;
    valgrind) under_valgrind ;;
    *)
        echo "No mode is called $mode" >&2
        exit 2
        ;;
    esac
done
