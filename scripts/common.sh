# Shared by run, test and .ci/run: what a Debian machine needs, and how a preset is built. To be sourced.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What builds and runs the program, and what the tests need beyond that.
build_packages=(g++ cmake ninja-build pkg-config qtbase5-dev zlib1g-dev libpng-dev libtiff-dev
    libgrantlee5-dev libqt5svg5 qt5-image-formats-plugins)
test_packages=(libgtest-dev libgmock-dev libbenchmark-dev libxml2-utils lua5.4 python3)
ci_packages=(clang clang-format clang-tidy libclang-rt-14-dev)

# install_missing PACKAGE...: installs those that aren't there, as root or through sudo, and says so.
install_missing() {
    local missing=() package
    # One call for all; packages that dpkg doesn't know are missing too.
    local installed
    installed=$(dpkg-query -W -f='${Package} ${db:Status-Abbrev}\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        grep -q "^$package ii" <<<"$installed" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing: ${missing[*]}" >&2
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing and neither root nor sudo is here to install them: ${missing[*]}" >&2
            exit 1
        }
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get update -qq >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# build PRESET TARGET...: configures once, then builds what changed; quiet unless it fails.
build() {
    local preset=$1 log
    shift
    log="$root/build/$preset.log"
    mkdir -p "$root/build"
    if [ ! -f "$root/build/$preset/build.ninja" ] ||
        ! grep -q "SORVANE_WERROR:BOOL=${SORVANE_WERROR:-OFF}" "$root/build/$preset/CMakeCache.txt"; then
        (cd "$root" && cmake --preset "$preset" -DSORVANE_WERROR="${SORVANE_WERROR:-OFF}") >"$log" 2>&1 || {
            cat "$log" >&2
            exit 1
        }
    fi
    # ninja's dry run tells for next to nothing whether there is anything to do.
    ninja -C "$root/build/$preset" -n "$@" 2>/dev/null | grep -q 'no work to do' && return
    echo "Building ($preset) ..." >&2
    ninja -C "$root/build/$preset" "$@" >"$log" 2>&1 || {
        cat "$log" >&2
        exit 1
    }
    # Warnings are for whoever works on the code.
    grep -A8 'warning:' "$log" >&2 || true
}
