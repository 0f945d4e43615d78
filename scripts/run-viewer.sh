#!/usr/bin/env bash
# Installs what is missing, builds the plug-in and the viewer (no sanitizers)
# in build/viewer, and starts the viewer on a camera. Without a display it
# runs offscreen and writes a screenshot instead of a window. Arguments pass
# on to the viewer, e.g. --camera dsp, --genicam cameras/dsp.xml,
# --device ID, --list-devices or --locale de_DE.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build/viewer}

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAB_SANITIZE=OFF \
    -DTAB_BUILD_TESTS=OFF -DTAB_BUILD_BENCHMARKS=OFF
cmake --build "$build" --parallel "$(nproc)" --target tabviewer tabcamera

viewer=("$build/bin/tabviewer" "$@")
for argument in "$@"; do
    if [ "$argument" = --list-devices ]; then
        exec "${viewer[@]}"
    fi
done
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    camera=autofunction
    previous=
    for argument in "$@"; do
        case "$argument" in
            --camera=* | --genicam=* | --device=*) camera=${argument#*=} ;;
            *) case "$previous" in --camera | --genicam | --device) camera=$argument ;; esac ;;
        esac
        previous=$argument
    done
    # A file or device id becomes a plain file name.
    camera=$(basename "$camera" .xml | tr -c 'A-Za-z0-9_.\n-' '_')
    screenshot="$build/viewer-$camera.png"
    echo "No display: running offscreen and saving the window to $screenshot"
    QT_QPA_PLATFORM=offscreen "${viewer[@]}" --screenshot "$screenshot"
    echo "Screenshot written: $screenshot"
else
    "${viewer[@]}"
fi
