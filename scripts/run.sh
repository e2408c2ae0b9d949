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
mkdir -p "$ws/output" "$ws/config" "$ws/home/Documents"
conf="$ws/config/Quillon Systems Ltd./Morvane 6.0/Qt Tools/Morvane Navarch.conf"
if [ ! -f "$conf" ]; then
    mkdir -p "$(dirname "$conf")"
    cat > "$conf" <<CONF
[Main%20Window]
source=Microsoft SQL Server
target=PostgreSQL
leftDisk=/
rightDisk=/
leftPanel\\Path=$root/samples/sql
rightPanel\\Path=$ws/output
CONF
fi
export XDG_CONFIG_HOME="$ws/config"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "No display found: starting under Xvfb." >&2
    exec xvfb-run -a "$root/build/bin/morvane-navarch"
fi
exec "$root/build/bin/morvane-navarch"
