#!/usr/bin/env bash
# Builds the benchmarks in Release twice, for the baseline commit (with the
# current bench/ copied in) and for the current tree, runs both in one go and
# writes the table of before and after to bench/RESULTS.md.
#
#   BASELINE     commit measured as "before" (default 53a28a9)
#   REPETITIONS  repetitions of each benchmark, the median is shown (default 3)
#   MIN_TIME     seconds each repetition runs at least (default 0.2)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
work=$root/build/bench-compare
baseline=${BASELINE:-53a28a9}
repetitions=${REPETITIONS:-3}
min_time=${MIN_TIME:-0.2}
launcher=()
if command -v ccache >/dev/null; then
    launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi

# The baseline's sources as committed, measured by today's benchmarks.
rm -rf "$work/before-src"
mkdir -p "$work/before-src"
git -C "$root" archive "$baseline" | tar -x -C "$work/before-src"
rm -rf "$work/before-src/bench"
cp -r "$root/bench" "$work/before-src/bench"
rm -f "$work/before-src/bench/RESULTS.md"
# Today's bench/ takes the benchmark library and the build options from the
# top-level project, which the baseline doesn't have yet.
{
    echo 'find_package(benchmark REQUIRED)'
    echo 'if(NOT TARGET tab_build_options)'
    echo '    add_library(tab_build_options INTERFACE)'
    echo 'endif()'
    cat "$root/bench/CMakeLists.txt"
} >"$work/before-src/bench/CMakeLists.txt"

export QT_QPA_PLATFORM=offscreen
for tree in before after; do
    source=$root
    if [ "$tree" = before ]; then
        source=$work/before-src
    fi
    cmake -S "$source" -B "$work/$tree" -DCMAKE_BUILD_TYPE=Release -DTAB_BUILD_TESTS=OFF \
        "${launcher[@]}" >/dev/null
    cmake --build "$work/$tree" --parallel 2 --target tab_bench preview_bench >/dev/null
done

for tree in before after; do
    bin=$work/$tree/bench
    "$bin/tab_bench" --benchmark_repetitions="$repetitions" --benchmark_min_time="$min_time" \
        --benchmark_report_aggregates_only=true --benchmark_format=json \
        --benchmark_out="$work/$tree-tab.json" >/dev/null
    # One process per size, so that each peak is that size's own.
    for size in 0 1 2; do
        "$bin/preview_bench" --benchmark_filter="P4_Resize/size:$size/" \
            --benchmark_repetitions="$repetitions" --benchmark_min_time="$min_time" \
            --benchmark_report_aggregates_only=true --benchmark_format=json \
            --benchmark_out="$work/$tree-preview-$size.json" >/dev/null
    done
done

python3 "$root/scripts/benchmark-table.py" "$work" "$(git -C "$root" rev-parse --short HEAD)" \
    "$baseline" "$repetitions" "$min_time" >"$root/bench/RESULTS.md"
# The live image in the tab exists only after the change: measured once.
cmake --build "$work/after" --parallel 2 --target tabimage_bench >/dev/null
{
    echo
    "$work/after/bench/tabimage_bench"
} >>"$root/bench/RESULTS.md"
echo "Wrote $root/bench/RESULTS.md"
