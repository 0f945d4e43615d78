#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and
# runs the tests, from nothing on a fresh Debian machine.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build/test}

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAB_SANITIZE=ON
cmake --build "$build" --parallel "$(nproc)"
(cd "$build" && ctest --output-on-failure --parallel "$(nproc)")

# The library's tests and the tab base's observer tests once more, under
# ThreadSanitizer, which can't be combined with the sanitizers above.
tsan=${TSAN_BUILD_DIR:-$root/build/tsan}
cmake -S "$root" -B "$tsan" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAB_SANITIZE_THREAD=ON \
    -DTAB_BUILD_BENCHMARKS=OFF
cmake --build "$tsan" --parallel "$(nproc)" --target tarka_test tabbase_test
(cd "$tsan" && ctest --output-on-failure --parallel "$(nproc)" -L '^(tarka_test|tabbase_test)$')
