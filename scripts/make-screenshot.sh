#!/usr/bin/env bash
# Makes the README's picture, docs/tabviewer.png: the viewer offscreen with the
# simulated camera's live image beside the tab.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build/viewer}

DISPLAY='' WAYLAND_DISPLAY='' BUILD_DIR=$build bash "$root/scripts/run-viewer.sh" --acquire
cp "$build/viewer-autofunction.png" "$root/docs/tabviewer.png"
echo "Written: $root/docs/tabviewer.png"
