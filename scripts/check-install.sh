#!/usr/bin/env bash
# Usage: scripts/check-install.sh [build folder]
# Checks the installed application from a built folder (build/ by default):
# validates the desktop entry and AppStream data, installs into a scratch
# DESTDIR and starts the application from there with nothing of the build
# folder in reach, then builds the Debian package and, when run as root,
# installs it with apt-get, starts it, and removes it again.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
build=$(cd "${1:-build}" && pwd)
scratch=$(mktemp -d)
apt=(apt-get -y -o DPkg::Lock::Timeout=120)
installed=
cleanup() {
    rm -rf "$scratch"
    [ -z "$installed" ] || DEBIAN_FRONTEND=noninteractive "${apt[@]}" purge morvane-navarch >/dev/null
}
trap cleanup EXIT
mkdir -p "$scratch/home" "$scratch/out"
mkdir -m 700 "$scratch/runtime"
project_version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")

# Runs a program with a clean environment: a private home, the system PATH
# only, no library path and no display.
console() {
    env -i PATH=/usr/bin:/bin HOME="$scratch/home" XDG_CONFIG_HOME="$scratch/home/config" \
        XDG_RUNTIME_DIR="$scratch/runtime" "$@"
}
# The same, offscreen.
app() {
    console QT_QPA_PLATFORM=offscreen "$@"
}

# The application at $1 must answer --version and --engine-path without a
# display, find the engine $2, which must convert a sample script, and start
# and keep running offscreen on the sample workspace.
check_application() {
    local program=$1 engine=$2
    local version
    version=$(console "$program" --version)
    [ "$version" = "Morvane Navarch $project_version" ] ||
        { echo "unexpected version '$version'"; exit 1; }
    local found
    found=$(console "$program" --engine-path)
    [ "$found" = "$engine" ] || { echo "engine found at '$found', expected '$engine'"; exit 1; }
    rm -rf "$scratch/out"/*
    console "$engine" "/F=$root/samples/sql/orders.sql" "/DIR=$scratch/out" \
        /SOURCE=MSSQL /TARGET=PostgreSQL >/dev/null
    [ -s "$scratch/out/orders.sql" ] || { echo "the engine wrote no output"; exit 1; }
    local status=0
    app timeout 5 "$program" "$root/samples/sql" "$scratch/out" >"$scratch/log" 2>&1 || status=$?
    if [ "$status" -ne 124 ]; then
        cat "$scratch/log"
        echo "the application stopped with status $status"
        exit 1
    fi
    echo "$program: starts, finds $engine"
}

echo "--- desktop entry and AppStream data"
desktop-file-validate resources/desktop/*.desktop
appstreamcli validate --no-net resources/desktop/*.metainfo.xml

echo "--- installed into a DESTDIR"
DESTDIR="$scratch/root" cmake --install "$build" --prefix /usr >/dev/null
dest=$scratch/root/usr
if readelf -d "$dest/bin/morvane-navarch" "$dest"/lib/morvane-navarch/*.so* | grep -F "$build"; then
    echo "the installed binaries still point into the build folder"
    exit 1
fi
check_application "$dest/bin/morvane-navarch" "$dest/lib/morvane-navarch/morvane"

echo "--- Debian package"
scripts/package.sh "$build" >/dev/null
deb=$(ls "$build"/morvane-navarch_*.deb)
dpkg-deb --field "$deb" Package Version Depends
if [ "$(id -u)" -eq 0 ]; then
    installed=yes
    DEBIAN_FRONTEND=noninteractive "${apt[@]}" install "$deb" >/dev/null
    check_application /usr/bin/morvane-navarch /usr/lib/morvane-navarch/morvane
    DEBIAN_FRONTEND=noninteractive "${apt[@]}" purge morvane-navarch >/dev/null
    installed=
    if [ -e /usr/bin/morvane-navarch ] || [ -e /usr/lib/morvane-navarch ]; then
        echo "the package left files behind"
        exit 1
    fi
else
    echo "not root: the package is built but not installed"
fi
