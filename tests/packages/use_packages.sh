#!/bin/sh
# use_packages.sh ROOT ARCHITECTURE WORK
#
# Builds and runs a program with the library that the packages of ARCHITECTURE put below ROOT ("" for the system itself):
# by CMake and by pkg-config, with the shared and with the static library. Works in the folder WORK.
set -eu

gRoot=$1
gArchitecture=$2
gWork=$3
gHere=$(cd "$(dirname "$0")" && pwd)

fail() {
    echo "$gArchitecture: $*" >&2
    exit 1
}

case "$gArchitecture" in
amd64) gLibDir=$gRoot/usr/lib/x86_64-linux-gnu gFlag=-m64 gBits=64 ;;
i386) gLibDir=$gRoot/usr/lib/i386-linux-gnu gFlag=-m32 gBits=32 ;;
*) fail "no such architecture" ;;
esac
export PKG_CONFIG_LIBDIR="$gLibDir/pkgconfig"
[ -z "$gRoot" ] || export LD_LIBRARY_PATH="$gLibDir"

# Runs the program $1, which was linked with the kind $2 of the library.
run_program() {
    lOutput=$("$1") || fail "$1 fails"
    [ "$lOutput" = "75.5 W, $gBits-bit" ] || fail "$1 prints $lOutput"
    lNeeded=$(readelf -d "$1" | sed -n 's/.*NEEDED.*\[\(liblyrsdk[^]]*\)\].*/\1/p')
    case "$2:$lNeeded" in
    shared:liblyrsdk.so.1 | static:) ;;
    *) fail "$1 should have the $2 library and needs '$lNeeded'" ;;
    esac
}

mkdir -p "$gWork"

# CMake finds the folder by itself where the compiler searches it.
if ! { cmake -S "$gHere/consumer" -B "$gWork/cmake" -DCMAKE_CXX_FLAGS="$gFlag" -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_PREFIX_PATH="$gRoot/usr" && cmake --build "$gWork/cmake"; } >"$gWork/log" 2>&1; then
    cat "$gWork/log" >&2
    fail "CMake cannot build the program"
fi
grep -q "^lyrsdk_DIR:PATH=$gLibDir/cmake/lyrsdk\$" "$gWork/cmake/CMakeCache.txt" || fail "CMake took another lyrsdk"
run_program "$gWork/cmake/cmake_lyrsdk" shared
run_program "$gWork/cmake/cmake_shared" shared
run_program "$gWork/cmake/cmake_static" static

# shellcheck disable=SC2046 # a list of options
for gPackage in lyrsdk lyrsdk-static; do
    c++ "$gFlag" -std=c++17 "$gHere/consumer/main.cpp" -o "$gWork/$gPackage" $(pkg-config --cflags --libs $gPackage)
done
run_program "$gWork/lyrsdk" shared
run_program "$gWork/lyrsdk-static" static
