#!/usr/bin/env bash
# Installs a build into a staging prefix, builds the example host against that
# prefix alone (CMake package and pkg-config file), and lets it create the tab
# from the installed plug-in.
#   check-kit.sh BUILD_DIR WORK_DIR [CXX_FLAGS]
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=$1
work=$2
flags=${3:-}
prefix=$work/prefix

rm -rf "$work"
cmake --install "$build" --prefix "$prefix" >/dev/null
cmake -S "$root/examples/host" -B "$work/host" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="$flags" >/dev/null
cmake --build "$work/host" >/dev/null

pc=$(find "$prefix" -name TarkaCPP.pc)
includes=$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --variable=includedir TarkaCPP)
test -f "$includes/TarkaCPP/TarkaCPP.h"
test -f "$includes/TabExtension/TabExtensionInterface.h"

"$work/host/examplehost" "$(find "$prefix" -name libtabextensionautoaoi.so)" dsp
