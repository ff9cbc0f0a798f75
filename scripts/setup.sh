#!/usr/bin/env bash
# Installs the Debian packages that building and testing need, and only those that are missing.
# Usage: scripts/setup.sh [--lint] [--browser] [--windows] [--docs] [--packages] [--fuzz]
#   --lint      adds the formatter and the linter
#   --browser   adds a browser for its test
#   --windows   adds the cross-compiler, Wine and the sources of GoogleTest
#   --docs      adds what makes the reference of the headers
#   --packages  adds what makes Debian packages
#   --fuzz      adds the compiler that has a fuzzer
set -euo pipefail

packages=(g++ cmake ninja-build pkg-config libgtest-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev
          libpugixml-dev libcairo2-dev fonts-dejavu-core)
for option in "$@"; do
    case $option in
        --lint) packages+=(clang-format clang-tidy clang) ;;
        --fuzz) packages+=(clang libclang-rt-dev) ;;
        --browser) packages+=(chromium python3) ;;
        --windows) packages+=(g++-mingw-w64-x86-64-posix wine wine64 googletest) ;;
        --docs) packages+=(doxygen) ;;
        --packages) packages+=(dpkg-dev file groff-base) ;;
        *) echo "setup.sh: there is no option $option" >&2; exit 2 ;;
    esac
done

if ! command -v dpkg-query >/dev/null; then
    echo "Not a Debian system: please provide the equivalents of ${packages[*]}" >&2
    exit 0
fi

missing=()
for package in "${packages[@]}"; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -gt 0 ] || exit 0

echo "Installing ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then as_root=(sudo); fi
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
