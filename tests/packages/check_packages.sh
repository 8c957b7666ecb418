#!/usr/bin/env bash
# check_packages.sh PACKAGES INSTALLED WORK
#
# Holds the packages of the folder PACKAGES against contents.txt and control.txt, and against INSTALLED, a folder with
# everything that the 64-bit build installs; unpacks them into an empty folder and builds and runs programs with what is
# there, on both word sizes. Works in the folder WORK.
set -euo pipefail

gPackages=$1
gInstalled=$2
gWork=$3
gHere=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
gSource=$gHere/../..
gRoot=$gWork/root
declare -A gTriplets=([amd64]=x86_64-linux-gnu [i386]=i386-linux-gnu)

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# Fails with the difference unless two files are the same.
expect_same() {
    diff -u "$1" "$2" >&2 || fail "$3"
}

# The files of a package, as contents.txt writes them.
list_package() {
    dpkg-deb --fsys-tarfile "$1" | tar -tv | grep -v '^d' | sed -E 's/^([^ ]+ +){5}\.\///; s/ link to / -> /' |
        sed "s,usr/lib/$2/,usr/lib/<triplet>/," | LC_ALL=C sort
}

# What contents.txt says of the package called $1.
expected_files() {
    awk -v lName="$1" '$1 == lName && $2 != "headers" { sub(/^[^ ]+ +/, ""); print }' "$gHere/contents.txt"
    if grep -q "^$1 *headers\$" "$gHere/contents.txt"; then
        sed -n -E 's/^any +(include\/)/usr\/\1/p' "$gSource/tests/install/manifest.txt"
    fi
}

# The fields that do not depend on the architecture; of the versions, only those of the project's own packages.
list_fields() {
    dpkg-deb -f "$1" Package Source Version Section Priority Multi-Arch Maintainer Depends Description |
        sed -E "/^Depends:/ s/((libc6|libgcc-s1|libstdc\+\+6|libtinygltf2d)) \(>= [^)]*\)/\1/g; s/ +$//"
    dpkg-deb -I "$1" shlibs 2>/dev/null | sed 's/^/shlibs: /' || true
    printf '\n'
}

check_package() {
    local lArchitecture=$1 lFile=$2 lName
    lName=$(dpkg-deb -f "$lFile" Package)
    [ "$(dpkg-deb -f "$lFile" Architecture)" = "$lArchitecture" ] || fail "$lFile: another architecture"
    list_package "$lFile" "${gTriplets[$lArchitecture]}" >"$gWork/$lName.found"
    expected_files "$lName" | LC_ALL=C sort >"$gWork/$lName.expected"
    expect_same "$gWork/$lName.expected" "$gWork/$lName.found" "$lFile: not the files of tests/packages/contents.txt"
    list_fields "$lFile" >>"$gWork/$lArchitecture.control"
    if dpkg-deb --fsys-tarfile "$lFile" | tar -tv |
        grep -v '^[-dl]rw[-x]r-[-x]r-[-x] root/root\|^lrwxrwxrwx root/root'; then
        fail "$lFile: the owner or the mode of these"
    fi
    if dpkg-deb --fsys-tarfile "$lFile" | grep -aF "$PWD" >/dev/null; then
        fail "$lFile: names the folder that it was built in"
    fi
}

# Unpacks the packages of an architecture; what one put there before may only come again as the same bytes.
unpack() {
    local lFile lPath
    for lFile in "$gPackages"/*_"$1".deb; do
        rm -rf "$gWork/one"
        dpkg-deb -x "$lFile" "$gWork/one"
        while IFS= read -r lPath; do
            [ ! -e "$gRoot/$lPath" ] || cmp "$gRoot/$lPath" "$gWork/one/$lPath" || fail "two packages differ in $lPath"
        done < <(cd "$gWork/one" && find . -type f)
        cp -a "$gWork/one/." "$gRoot/"
    done
}

check_architecture() {
    local lArchitecture=$1 lFile
    : >"$gWork/$lArchitecture.control"
    for lFile in "$gPackages"/*_"$lArchitecture".deb; do
        check_package "$lArchitecture" "$lFile"
    done
    if [ "$lArchitecture" = amd64 ]; then
        expect_same "$gHere/control.txt" "$gWork/amd64.control" "not the fields of tests/packages/control.txt"
    else
        # The libraries only.
        sed '/^Package: lyrsdk-tools$/,$d' "$gHere/control.txt" >"$gWork/expected.control"
        expect_same "$gWork/expected.control" "$gWork/i386.control" "not the fields of tests/packages/control.txt"
    fi
    unpack "$lArchitecture"
}

# What is installed is in a package: a file that no component has would be missing in all of them.
check_complete() {
    (cd "$gRoot" && find . ! -type d ! -path "*/${gTriplets[i386]}/*" | LC_ALL=C sort) >"$gWork/packed"
    (cd "$gInstalled" && find . ! -type d | LC_ALL=C sort) >"$gWork/installed"
    expect_same "$gWork/installed" "$gWork/packed" "what is installed is not what the packages hold"
}

check_inspector() {
    (
        cd "$gSource/examples/scenes"
        LD_LIBRARY_PATH=$gRoot/usr/lib/${gTriplets[amd64]} "$gRoot/usr/bin/lyrinspect" lamps.gltf
    ) >"$gWork/lamps.out"
    expect_same "$gSource/tests/tools/lyrinspect/expected/lamps.out" "$gWork/lamps.out" "lyrinspect shows other things"
}

rm -rf "$gWork"
mkdir -p "$gRoot"
for gArchitecture in amd64 i386; do
    check_architecture "$gArchitecture"
done
check_complete
for gArchitecture in amd64 i386; do
    "$gHere/use_packages.sh" "$(cd "$gRoot" && pwd)" "$gArchitecture" "$gWork/$gArchitecture"
done
check_inspector
