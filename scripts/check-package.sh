#!/usr/bin/env bash
# Unpacks a Debian package into an empty root and runs that tree's viewer
# offscreen from another folder, with a bare environment: it must find its
# plug-in, open the simulated camera and show the live image beside the tab.
#   check-package.sh PACKAGE.deb
# Sanitizer options in the environment are handed on to the viewer.
set -euo pipefail

package=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

dpkg-deb -x "$package" "$work/root"
viewer=$(find "$work/root" -path '*/bin/tabviewer')
test -n "$(find "$work/root" -path '*/man1/tabviewer.1.gz')"
test -n "$(find "$work/root" -name tabviewer.desktop)"
# The viewer's own library comes from the unpacked tree.
ldd "$(realpath "$viewer")" | grep -q "libTarkaCPP.so.* => $work/root/"

environment=(PATH=/usr/bin:/bin HOME="$work" QT_QPA_PLATFORM=offscreen)
for name in ASAN_OPTIONS LSAN_OPTIONS UBSAN_OPTIONS; do
    if [ -n "${!name:-}" ]; then
        environment+=("$name=${!name}")
    fi
done
mkdir "$work/elsewhere"
cd "$work/elsewhere"
env -i "${environment[@]}" "$viewer" --acquire --screenshot window.png 2>messages.txt ||
    { cat messages.txt; exit 1; }
# Any line of the viewer's own means a declined tab or no image shown.
if grep 'tabviewer:' messages.txt; then
    exit 1
fi
test -s window.png
echo "The unpacked viewer ran: tab and live image shown"
