# shellcheck shell=bash
# What the repository's scripts share. Source it from a script that stands in the repository's
# root folder (cd there first).
set -euo pipefail

# TARNWELL_WERROR=ON turns compiler warnings into errors.
werror=${TARNWELL_WERROR:-OFF}

say() {
    printf '==> %s\n' "$*"
}

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# configure PRESET [CMAKE-ARGUMENT...]
configure() {
    local preset=$1
    shift
    say "Configuring (preset $preset)"
    cmake --preset "$preset" -DTARNWELL_WERROR="$werror" "$@" >/dev/null
}

# build PRESET [CMAKE-BUILD-ARGUMENT...]
build() {
    local preset=$1
    shift
    say "Building (preset $preset)"
    local TIMEFORMAT='==> Built in %R s, in which the processors worked %U s + %S s'
    time cmake --build --preset "$preset" "$@"
}

# The C++ files of the repository, whether already committed or not, one a line.
sources() {
    git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h'
}
