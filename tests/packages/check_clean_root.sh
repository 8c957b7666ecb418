#!/usr/bin/env bash
# check_clean_root.sh PACKAGES
#
# Installs the packages of the folder PACKAGES into a fresh Debian as a user would, with apt-get: first the tools alone,
# then the libraries of both architectures beside each other. Builds and runs programs there, prints how long that took
# from nothing to a running program, and removes the packages again. Says so and succeeds where it cannot be done.
set -euo pipefail

gPackages=$1
gSource=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

skip() {
    printf 'SKIPPED, the packages were not installed into a fresh Debian: %s\n' "$*" >&2
    exit 0
}

[ "$(id -u)" = 0 ] || skip "that takes root"
command -v debootstrap >/dev/null || skip "that takes debootstrap"
unshare --mount --pid --fork true 2>/dev/null || skip "that takes mounts of its own (unshare)"

# shellcheck source=/dev/null
gSuite=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME-}")
# shellcheck disable=SC2016 # a field of apt-get's
gMirror=$(apt-get indextargets --format '$(SITE)' "Created-By: Packages" "Codename: $gSuite" | head -1)
[ -n "$gMirror" ] || skip "apt-get knows no mirror of $gSuite"

gRoot=$(mktemp -d -p /var/tmp lyrsdk-root.XXXXXX)
trap 'rm -rf --one-file-system "$gRoot"' EXIT

# What a command mounts is gone when it ends, however it ends.
quietly_mounting() {
    unshare --mount --pid --fork "$@" >"$gRoot.log" 2>&1 || {
        tail -50 "$gRoot.log" >&2
        rm -f "$gRoot.log"
        return 1
    }
    rm -f "$gRoot.log"
}

printf 'Making a fresh %s from %s\n' "$gSuite" "$gMirror" >&2
quietly_mounting debootstrap --variant=minbase "$gSuite" "$gRoot" "$gMirror"
apt-config dump --no-empty Acquire::http::Proxy Acquire::https::Proxy >"$gRoot/etc/apt/apt.conf.d/90proxy"
cp --remove-destination /etc/resolv.conf "$gRoot/etc/resolv.conf"
mkdir -p "$gRoot/lyrsdk"
cp "$gPackages"/*.deb "$gSource/tests/packages/use_packages.sh" "$gSource/examples/scenes/lamps.gltf" \
    "$gSource/tests/tools/lyrinspect/expected/lamps.out" "$gRoot/lyrsdk/"
cp -r "$gSource/tests/packages/consumer" "$gRoot/lyrsdk/"

cat >"$gRoot/lyrsdk/run" <<'END'
set -eu
cd /lyrsdk
fail() { echo "$*" >&2; exit 1; }
install_quietly() {
    apt-get install -y --no-install-recommends "$@" >log 2>&1 || { tail -30 log >&2; fail "cannot install $*"; }
}
says() { printf '%4d s  %s\n' $(($(date +%s) - gStart)) "$*"; }

dpkg --add-architecture i386
gStart=$(date +%s)
apt-get update >log 2>&1 || { tail -30 log >&2; fail "cannot read the lists of the mirror"; }
says "lists read"

install_quietly ./liblyrsdk1_*_amd64.deb ./lyrsdk-tools_*_amd64.deb
lyrinspect lamps.gltf >lamps.shown
cmp lamps.shown lamps.out || fail "lyrinspect shows something else"
says "lyrinspect installed alone, and shows a scene"

install_quietly g++ cmake make pkg-config ./liblyrsdk-dev_*_amd64.deb
says "compiler, CMake, pkg-config and liblyrsdk-dev installed"
sh use_packages.sh "" amd64 /tmp/amd64
says "64-bit programs built and run, by CMake and pkg-config, shared and static"

install_quietly gdb
gdb -nx -batch -ex "info pretty-printer .*liblyrsdk lyrsdk" /usr/lib/x86_64-linux-gnu/liblyrsdk.so.1 >shown 2>&1
grep -q KLyrPropertyHandle shown || { cat shown >&2; fail "gdb does not load the printers by itself"; }
says "gdb installed, and knows the library's types"

install_quietly g++-multilib ./liblyrsdk1_*_i386.deb ./liblyrsdk-dev_*_i386.deb
sh use_packages.sh "" i386 /tmp/i386
sh use_packages.sh "" amd64 /tmp/again
says "32-bit programs built and run beside them"

for lTriplet in x86_64-linux-gnu i386-linux-gnu; do
    ldconfig -p | grep -q "/$lTriplet/liblyrsdk.so.1\$" || fail "the loader does not know the library of $lTriplet"
done
# shellcheck disable=SC2046 # a list of packages
apt-get purge -y $(dpkg-query -W -f '${binary:Package} ' '*lyrsdk*') >log 2>&1 || {
    tail -30 log >&2
    fail "cannot remove the packages"
}
lLeft=$(find /usr /etc /var/lib -name '*lyrsdk*' -o -name 'lyrinspect*')
[ -z "$lLeft" ] || fail "left behind: $lLeft"
says "removed without a trace"
END
# shellcheck disable=SC2016 # the inner shell expands it
unshare --mount --pid --fork sh -c 'mount -t proc proc "$1/proc" && mount --bind /dev "$1/dev" &&
    exec chroot "$1" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive http_proxy="${http_proxy-}" https_proxy="${https_proxy-}" \
        sh /lyrsdk/run' sh "$gRoot"
