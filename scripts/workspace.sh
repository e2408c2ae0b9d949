#!/usr/bin/env bash
# Usage: scripts/workspace.sh FOLDER [extra settings lines]
# Prepares a sample workspace in FOLDER: an empty output folder and a settings
# store (FOLDER/config) that opens the left panel on samples/sql and the right
# panel on the output folder. An existing store is left as it is.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
ws=$1
shift
mkdir -p "$ws/output"
conf="$ws/config/Quillon Systems Ltd./Morvane 6.0/Qt Tools/Morvane Navarch.conf"
[ -f "$conf" ] && exit 0
mkdir -p "$(dirname "$conf")"
{
    echo '[Main%20Window]'
    printf '%s\n' "$@"
    cat <<CONF
source=Microsoft SQL Server
target=PostgreSQL
leftDisk=/
rightDisk=/
leftPanel\\Path=$root/samples/sql
rightPanel\\Path=$ws/output
CONF
} > "$conf"
