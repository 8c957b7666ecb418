# shellcheck shell=bash disable=SC2034 # what is set here is used by the scripts that source it
#
# Shared by the scripts of this folder and by .ci/run; to be sourced, from any directory.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit

gBuildPackages="cmake ninja-build g++ googletest libtinygltf-dev libcli11-dev nlohmann-json3-dev"
gTestPackages="$gBuildPackages g++-multilib pkg-config gdb"
gCheckPackages="clang clang-format libclang-rt-14-dev"
gAnalyzePackages="$gBuildPackages clang clang-tidy cppcheck"
gValgrindPackages="$gTestPackages valgrind"
gInstructionPackages="$gTestPackages valgrind libbenchmark-dev python3"
gPeerPackages="libabsl-dev libboost-dev qt6-base-dev libglib2.0-dev libcoin-dev librttr-dev libimath-dev"
gBenchPackages="$gTestPackages libbenchmark-dev python3 $gPeerPackages"
gPackagePackages="$gBuildPackages g++-multilib pkg-config dpkg-dev file xz-utils"
gAbiPackages="$gPackagePackages abigail-tools"
gGrowthPackages="cmake ninja-build g++ googletest valgrind python3"
gDocsPackages="doxygen python3"

say() {
    printf '%s\n' "$*" >&2
}

die() {
    say "$*"
    exit 1
}

# The packages among the arguments that are not installed.
missing_packages() {
    local lPackage
    for lPackage in "$@"; do
        dpkg-query -W -f='${db:Status-Status}\n' "$lPackage" 2>/dev/null | grep -qx installed || printf '%s\n' "$lPackage"
    done
}

# Installs those of the named Debian packages that are missing. On a machine that installs nothing this way, the names
# are printed, and what the machine brings itself has to do.
need_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        say "This is not a Debian machine; the build needs what these packages hold: $*"
        return
    fi
    local lMissing lRoot=()
    lMissing=$(missing_packages "$@" | tr '\n' ' ')
    [ -n "$lMissing" ] || return 0
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || die "These packages are missing: $lMissing(run as root: apt-get install $lMissing)"
        lRoot=(sudo)
    fi
    say "Installing $lMissing"
    # A list that cannot be had now, perhaps that of another architecture, need not be one that counts.
    "${lRoot[@]}" apt-get update >/dev/null 2>&1 || say "Not all lists of packages are new."
    # shellcheck disable=SC2086 # a list of words
    quietly "${lRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $lMissing
}

# The same for packages of the 32-bit architecture, named without it.
need_packages_i386() {
    local lMissing lRoot=()
    command -v dpkg-query >/dev/null || return 0
    lMissing=$(missing_packages "${@/%/:i386}" | tr '\n' ' ')
    [ -n "$lMissing" ] || return 0
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null ||
            die "These packages are missing: $lMissing(as root: dpkg --add-architecture i386; apt-get update; apt-get install)"
        lRoot=(sudo)
    fi
    say "Installing $lMissing"
    quietly "${lRoot[@]}" dpkg --add-architecture i386
    "${lRoot[@]}" apt-get update >/dev/null 2>&1 || say "Not all lists of packages are new."
    # shellcheck disable=SC2086 # a list of words
    quietly "${lRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $lMissing
}

# Runs a command and shows what it printed only if it fails.
quietly() {
    local lLog lStatus=0
    lLog=$(mktemp)
    "$@" >"$lLog" 2>&1 || lStatus=$?
    if [ "$lStatus" != 0 ]; then
        cat "$lLog" >&2
        say "Failed ($lStatus): $*"
    fi
    rm -f "$lLog"
    return "$lStatus"
}

# Configures and builds a preset; further arguments go to the build.
build_preset() {
    local lPreset=$1
    shift
    quietly cmake --preset "$lPreset"
    quietly cmake --build --preset "$lPreset" --parallel "$(nproc)" "$@"
}

# Builds a preset and runs its tests. Shows the failures and the closing lines of ctest.
test_preset() {
    local lLog lStatus=0
    say "== $1"
    build_preset "$1"
    lLog=$(mktemp)
    ctest --preset "$1" --parallel "$(nproc)" >"$lLog" 2>&1 || lStatus=$?
    if [ "$lStatus" = 0 ]; then
        sed -n '/% tests passed/,$p' "$lLog"
    else
        cat "$lLog"
    fi
    rm -f "$lLog"
    return "$lStatus"
}
