#!/usr/bin/env bash
# Builds the Debian package from a Release build (build/release) into
# build/package/, then checks it: unpacked into an empty root, its viewer
# runs with nothing of the build on any path (scripts/check-package.sh).
#   apt install ./build/package/*.deb
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build/release}
output=$root/build/package

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
    -DTAB_SANITIZE=OFF -DTAB_BUILD_TESTS=OFF -DTAB_BUILD_BENCHMARKS=OFF
cmake --build "$build" --parallel "$(nproc)"
rm -rf "$output"
(cd "$build" && cpack -G DEB -B "$output")
rm -rf "$output/_CPack_Packages"
bash "$root/scripts/check-package.sh" "$output"/*.deb
echo "Package: $(ls "$output"/*.deb)"
