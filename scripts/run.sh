#!/usr/bin/env bash
# Installs what is missing, builds, and starts the application on the sample
# workspace: the left panel on the sample SQL scripts, the right panel on an
# empty output folder. The workspace keeps its own settings under build/workspace.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
scripts/setup.sh
scripts/build.sh build

ws=$root/build/workspace
scripts/workspace.sh "$ws"
export XDG_CONFIG_HOME="$ws/config"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "No display found: starting under Xvfb." >&2
    exec xvfb-run -a "$root/build/bin/morvane-navarch"
fi
exec "$root/build/bin/morvane-navarch"
