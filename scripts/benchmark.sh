#!/bin/sh
# Builds the benchmarks, runs them all and rewrites the measured parts of docs/performance.md and
# docs/performance.svg: scripts/benchmark.sh [rounds]
#
# Wants a machine that does nothing else meanwhile. LLVM (llvm-dev) and Boost.Graph
# (libboost-graph-dev) are compared with where they are installed.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

rounds=${1:-7}
build=build/benchmark
page=docs/performance.md
plot=docs/performance.svg

# shellcheck disable=SC2086  # a list of words
require_packages $BUILD_PACKAGES libbenchmark-dev
mkdir -p build
echo "Building (preset release, with benchmarks)"
cmake --preset release -B "$build" -DMODELING_NUV0_BUILD_BENCHMARKS=ON \
    -DMODELING_NUV0_BUILD_TESTS=OFF -DMODELING_NUV0_BUILD_EXAMPLES=OFF \
    -DMODELING_NUV0_BUILD_TOOLS=OFF >build/benchmark.log 2>&1 || {
    cat build/benchmark.log
    exit 1
}
cmake --build "$build" --parallel "$(nproc)" --target walk-benchmarks

# cached VARIABLE: what the build was configured with.
cached() {
    sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"
}

# The commit of the tree as it is; the page and the picture are what this script changes.
commit() {
    if ! git rev-parse --short HEAD 2>/dev/null; then
        echo "unknown"
        return
    fi
    git diff --quiet HEAD -- . ":!$page" ":!$plot" 2>/dev/null || echo "with local changes"
}

describe_run() {
    compiler=$(cached CMAKE_CXX_COMPILER)
    processor=$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)
    memory=$(awk '/^MemTotal/ { printf "%.0f GB", $2 / 1e6 }' /proc/meminfo)
    echo "| | |"
    echo "|---|---|"
    echo "| machine | $processor, $(nproc) cores, $memory, $(uname -s) $(uname -m) |"
    echo "| compiler | $("$compiler" --version | head -n 1) |"
    echo "| flags | $(cached CMAKE_CXX_FLAGS)$(cached CMAKE_CXX_FLAGS_RELWITHDEBINFO), shared libraries |"
    echo "| commit | $(commit | tr '\n' ' ' | sed 's/ $//') |"
    echo "| command | \`scripts/benchmark.sh $rounds\` |"
}

echo "Measuring, $rounds rounds"
describe_run >"$build/measured.md"
"$build/benchmarks/walk-benchmarks" --table --rounds "$rounds" --svg "$build/performance.svg" \
    --summary "$build/summary.md" >>"$build/measured.md"

# replace NAME: what stands between the marks "NAME: begin" and "NAME: end" of the page that comes in.
replace() {
    awk -v name="$1" -v part="$build/$1.md" '
        $0 ~ "^<!-- " name ": begin" { print; print ""; while ((getline line < part) > 0) print line
                                       print ""; skipping = 1; next }
        $0 ~ "^<!-- " name ": end" { skipping = 0; found = 1 }
        !skipping { print }
        END { if (!found) exit 1 }
    ' || {
        echo "$page has no place for what is $1" >&2
        exit 1
    }
}

# Only after everything has been measured.
replace summary <"$page" >"$build/half.md"
replace measured <"$build/half.md" >"$build/performance.md"
cp "$build/performance.md" "$page"
cp "$build/performance.svg" "$plot"
echo "Rewrote $page and $plot"
