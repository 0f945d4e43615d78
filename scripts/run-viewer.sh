#!/usr/bin/env bash
# Installs what is missing, builds the plug-in and the viewer (no sanitizers)
# in build/viewer, and starts the viewer on a simulated camera. Without a
# display it runs offscreen and writes a screenshot instead of a window.
# Arguments pass on to the viewer, e.g. --camera dsp or --locale de_DE.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build/viewer}

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAB_SANITIZE=OFF \
    -DTAB_BUILD_TESTS=OFF -DTAB_BUILD_BENCHMARKS=OFF
cmake --build "$build" --parallel "$(nproc)" --target tabviewer

viewer=("$build/bin/tabviewer" "$@")
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    camera=autofunction
    previous=
    for argument in "$@"; do
        case "$argument" in
            --camera=*) camera=${argument#--camera=} ;;
            *) if [ "$previous" = --camera ]; then camera=$argument; fi ;;
        esac
        previous=$argument
    done
    screenshot="$build/viewer-$camera.png"
    echo "No display: running offscreen and saving the window to $screenshot"
    QT_QPA_PLATFORM=offscreen "${viewer[@]}" --screenshot "$screenshot"
    echo "Screenshot written: $screenshot"
else
    "${viewer[@]}"
fi
