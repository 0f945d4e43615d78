#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and
# runs the tests, from nothing on a fresh Debian machine.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build/test}

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAB_SANITIZE=ON
cmake --build "$build" --parallel "$(nproc)"
cd "$build"
ctest --output-on-failure --parallel "$(nproc)"
