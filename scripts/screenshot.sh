#!/usr/bin/env bash
# Takes docs/screenshot.png: the application in a real window under Xvfb, after
# converting the sample workspace.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
scripts/setup.sh
scripts/build.sh build
out=${1:-$root/docs/screenshot.png}
ws=$(mktemp -d)
trap 'rm -rf "$ws"' EXIT
scripts/workspace.sh "$ws" "size=@Size(1280 760)" "pos=@Point(0 0)"
export XDG_CONFIG_HOME="$ws/config" HOME="$ws"
xvfb-run -a -s "-screen 0 1280x800x24" bash -c '
    "$0" & app=$!
    sleep 4
    # Select the sample scripts in the left panel and convert them.
    xdotool mousemove 100 205 click 1
    sleep 0.5
    xdotool key ctrl+a
    sleep 0.5
    xdotool key F5
    sleep 10
    import -window root "$1"
    kill $app' "$root/build/bin/morvane-navarch" "$out"
echo "saved $out"
