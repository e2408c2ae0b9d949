#!/usr/bin/env bash
# Installs every Debian package the project needs. Safe to run again: it does
# nothing when everything is already installed.
set -euo pipefail

PACKAGES=(
    build-essential cmake ninja-build ccache pkg-config
    qtbase5-dev qtbase5-dev-tools libqt5svg5-dev libqscintilla2-qt5-dev
    python3 python3-sqlglot postgresql postgresql-client util-linux
    fonts-open-sans
    xvfb xauth imagemagick xdotool openbox
    desktop-file-utils appstream
    g++-mingw-w64-x86-64
    diffutils findutils grep time
)

missing=()
for p in "${PACKAGES[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"
echo "Installing: ${missing[*]}"
$SUDO apt-get update
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y --no-install-recommends "${missing[@]}"
