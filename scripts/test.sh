#!/bin/sh
# Builds everything and runs all tests: scripts/test.sh [option of ctest]...
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

# shellcheck disable=SC2086  # a list of words
require_packages $BUILD_PACKAGES
mkdir -p build
build_preset release
ctest --preset release "$@"
