#!/usr/bin/env bash
# Usage: scripts/package.sh [build folder]
# Builds the application (Release, into build-package/ unless a configured
# build folder is given) and packs it as a Debian package there:
#   sudo apt-get install ./build-package/morvane-navarch_*.deb
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
scripts/setup.sh
dir=${1:-build-package}
if [ ! -f "$dir/CMakeCache.txt" ]; then
    cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
fi
# Only what the package holds; the tests and benchmarks are not needed.
cmake --build "$dir" -j"$(nproc)" --target morvane-navarch
(cd "$dir" && cpack -G DEB)
ls "$dir"/morvane-navarch_*.deb
