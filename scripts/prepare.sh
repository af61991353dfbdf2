# What run.sh and test.sh share: installing packages and building. To be sourced by bash, with
# `root` set to the repository, and `preset` to how to build. All output goes to standard error.

build="$root/build/$preset"

build_packages=(g++ cmake ninja-build pkg-config flex bison libboost-dev libsqlite3-dev
    liburiparser-dev libcurl4-openssl-dev libpugixml-dev libcpp-httplib-dev)

missing_packages() {
    local package status
    for package in "$@"; do
        status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) || status=none
        [ "$status" = installed ] || echo "$package"
    done
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Packages must be installed, and this is neither root nor is there sudo: $*" >&2
        return 1
    fi
}

# Installs those of the given packages that are not there.
need_packages() {
    local missing
    # shellcheck disable=SC2207 # package names hold neither blanks nor patterns
    missing=($(missing_packages "$@"))
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing ${missing[*]}" >&2
    as_root apt-get -qq update >&2 </dev/null &&
        as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get -qq install -y --no-install-recommends "${missing[@]}" >&2 </dev/null
}

# build_targets TESTS [TARGET...]: configures, when that was not done in this way before, and
# builds the targets, or all. One build at a time.
build_targets() {
    local tests=$1
    shift
    # A compiler cache keeps its files in here too.
    export CCACHE_DIR=${CCACHE_DIR:-$root/.cache/ccache}
    mkdir -p "$build" || return
    (
        flock 9 || exit
        if [ ! -e "$build/build.ninja" ] ||
            { [ "$tests" = ON ] && ! grep -q '^VELCLP_BUILD_TESTS:BOOL=ON$' "$build/CMakeCache.txt"; }; then
            (cd "$root" && cmake --preset "$preset" -DVELCLP_BUILD_TESTS="$tests") || exit
        fi
        ninja --quiet -C "$build" "$@"
    ) 9>"$build/.lock" >&2 </dev/null
}
