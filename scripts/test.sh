#!/usr/bin/env bash
# Installs what is missing, builds and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh build
cd build
ctest -j"$(nproc)" --output-on-failure --timeout 300
