#!/bin/sh
# Makes the Debian packages in build/deb and has lintian look at them: scripts/deb.sh
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh

# shellcheck disable=SC2086  # a list of words
require_packages $BUILD_PACKAGES dpkg-dev lintian
build=build/deb
mkdir -p build
echo "Building (preset release, for /usr)"
cmake --preset release -B "$build" -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_SKIP_INSTALL_RPATH=ON \
    -DMODELING_NUV0_DEBIAN_PACKAGES=ON -DMODELING_NUV0_BUILD_TESTS=OFF \
    -DMODELING_NUV0_BUILD_EXAMPLES=OFF >build/deb.log 2>&1 || {
    cat build/deb.log
    exit 1
}
cmake --build "$build" --parallel "$(nproc)"
rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB >>../deb.log 2>&1) || {
    cat build/deb.log
    exit 1
}
ls "$build"/*.deb
lintian --fail-on error --allow-root "$build"/*.deb
