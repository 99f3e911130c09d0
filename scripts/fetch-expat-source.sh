#!/bin/sh
# fetch-expat-source.sh: puts expat's upstream source tarball, as Debian ships it, into
# build/_deps/ for the Windows cross build (Debian has no mingw package of expat).
# Idempotent: does nothing when the tarball is already there. Run as root (apt).
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
deps="$root/build/_deps"
tarball="expat_2.5.0.orig.tar.gz"

if [ -f "$deps/$tarball" ]; then
    echo "expat source already present: $deps/$tarball"
    exit 0
fi

# Source entries for the suites that carry expat's source package (the security suite
# does not publish its source files on these mirrors).
list=/etc/apt/sources.list.d/qanres-expat-src.sources
if [ ! -f "$list" ]; then
    cat >"$list" <<'SOURCES'
Types: deb-src
URIs: http://deb.debian.org/debian
Suites: bookworm bookworm-updates
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
SOURCES
    apt-get update
fi

mkdir -p "$deps"
cd "$deps"
apt-get source --download-only expat
if [ ! -f "$tarball" ]; then
    echo "apt-get source did not produce $tarball" >&2
    exit 1
fi
echo "expat source fetched: $deps/$tarball"
