#!/usr/bin/env bash
# The Win32 code paths live in small Qt-free *_win.cpp files; no Qt for Windows
# is available here, so they are checked with the MinGW-w64 cross compiler.
set -euo pipefail
cd "$(dirname "$0")/.."
compiler=x86_64-w64-mingw32-g++
command -v "$compiler" >/dev/null || { echo "$compiler missing: run scripts/setup.sh"; exit 1; }
found=0
while IFS= read -r -d '' src; do
    found=1
    echo "checking $src"
    "$compiler" -std=c++17 -fsyntax-only -Wall -Wextra -Werror -Isources/core -Isources/platform "$src"
done < <(find sources -name '*_win.cpp' -print0)
[ "$found" -eq 1 ] || echo "no Win32 sources"
