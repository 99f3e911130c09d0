#!/usr/bin/env bash
# Installs what building and testing QanResources needs on Debian 12, and nothing that is
# already there. Run as root or with sudo available.
set -euo pipefail

packages=(
    cmake ninja-build g++ clang clang-format
    libgtest-dev libgmock-dev googletest libbenchmark-dev
    libexpat1-dev libcli11-dev
    libicu-dev icu-devtools gettext
    g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64
    wine64 dpkg-dev ca-certificates gettext
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

if [ ${#missing[@]} -gt 0 ]; then
    echo "installing: ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}"
fi

# expat's source for the Windows build (Debian ships no mingw build of it).
here=$(cd "$(dirname "$0")" && pwd)
if [ -x "$here/fetch-expat-source.sh" ]; then
    "$here/fetch-expat-source.sh"
fi
