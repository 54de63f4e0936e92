# shellcheck shell=sh disable=SC2034  # what is set here is used where this is sourced
# Sourced by the other scripts: installs Debian packages, and only those that are missing.

# What it takes to build the library, model-walk and the tests, and to run them.
BUILD_PACKAGES="g++ cmake ninja-build libgtest-dev libexpat1-dev libcli11-dev libzip-dev zlib1g-dev"

# require_packages NAME...
require_packages() {
    if ! command -v dpkg-query >/dev/null 2>&1; then
        echo "This is no Debian or Ubuntu; nothing is installed. Needed here: $*" >&2
        return 0
    fi
    missing=""
    for package in "$@"; do
        # Held and half-installed packages do not count as there.
        status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null) ||
            status=""
        [ "$status" = installed ] || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0

    as_root=""
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null 2>&1; then
            echo "Missing:$missing. Install them as root: apt-get install$missing" >&2
            return 1
        fi
        as_root=sudo
    fi
    echo "Installing:$missing"
    $as_root apt-get update --quiet=2 || return 1
    # shellcheck disable=SC2086  # a list of words
    $as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install --yes --quiet=2 --no-install-recommends $missing >/dev/null
}

# Configures a preset and builds it or some of its targets.
#
# build_preset PRESET [--target TARGET...]
build_preset() {
    preset=$1
    shift
    echo "Building (preset $preset)"
    cmake --preset "$preset" >"build/$preset.log" 2>&1 || {
        cat "build/$preset.log"
        return 1
    }
    cmake --build --preset "$preset" --parallel "$(nproc)" "$@"
}
