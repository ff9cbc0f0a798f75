#!/usr/bin/env bash
# Builds the Debian packages and checks what a system that installs them relies on: what each holds and needs, that the
# program finds the library where the package puts it, and that the manual page knows every command.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=$(scripts/package.sh)
root=build/packages/root
rm -rf "$root"
for package in $packages; do dpkg-deb --extract "$package" "$root"; done
libraries=usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
version=$(sed -n 's/^project(Orvane VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

fail() { echo "$*" >&2; exit 1; }

# holds PACKAGE PATH...: the package has these files, and a licence and change logs
holds() {
    local package=$1 path
    shift
    for path in "$@" "usr/share/doc/$package"/{copyright,changelog.gz,changelog.Debian.gz}; do
        dpkg-deb --contents "build/packages/${package}_"*.deb | grep " \./$path\( \|$\)" >/dev/null ||
            fail "$package does not hold $path"
    done
}

# needs PACKAGE DEPENDENCY...: it says that it depends on each
needs() {
    local package=$1 dependency
    shift
    for dependency in "$@"; do
        dpkg-deb --field "build/packages/${package}_"*.deb Depends | tr ',' '\n' | grep "^ *$dependency" >/dev/null ||
            fail "$package does not need $dependency"
    done
}

holds liborvane1 "$libraries/liborvane.so.1" "$libraries/liborvane.so.$version"
holds liborvane-dev usr/include/orvane/orvane.h \
    "$libraries"/{liborvane.so,pkgconfig/orvane.pc,cmake/Orvane/OrvaneConfig.cmake}
holds orvane usr/bin/orvane usr/share/man/man1/orvane.1.gz
needs liborvane1 libc6 libgomp1 'libstdc++6'
needs liborvane-dev "liborvane1 (= $version-1)"
needs orvane "liborvane1 (= $version-1)" libcairo2 libpugixml1v5 fonts-dejavu-core

if readelf --dynamic "$root/usr/bin/orvane" | grep -E 'RPATH|RUNPATH'; then fail "The program names a directory"; fi
export LD_LIBRARY_PATH=$root/$libraries
[ "$("$root/usr/bin/orvane" --version)" = "$version" ] || fail "The program is not version $version"

manual=$root/usr/share/man/man1/orvane.1.gz
commands=$("$root/usr/bin/orvane" --help | sed '1,/^Subcommands:/d' | awk 'NF { print $1 }')
for command in $commands; do
    zcat "$manual" | grep "^\.SS $command$" >/dev/null || fail "The manual page lacks $command"
done
complaints=$(zcat "$manual" | groff -man -Tutf8 -ww -z 2>&1)
[ -z "$complaints" ] || fail "$complaints"
