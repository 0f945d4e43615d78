#!/usr/bin/env bash
# Makes the README's picture, docs/tabviewer.png: the viewer offscreen with the
# simulated camera's live image beside the tab. VIEWER names a viewer to use,
# such as the installed tabviewer; by default run-viewer.sh builds one.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
picture=$root/docs/tabviewer.png

if [ -n "${VIEWER:-}" ]; then
    QT_QPA_PLATFORM=offscreen "$VIEWER" --acquire --screenshot "$picture"
else
    build=${BUILD_DIR:-$root/build/viewer}
    DISPLAY='' WAYLAND_DISPLAY='' BUILD_DIR=$build bash "$root/scripts/run-viewer.sh" --acquire
    cp "$build/viewer-autofunction.png" "$picture"
fi
echo "Written: $picture"
