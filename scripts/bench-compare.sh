#!/usr/bin/env bash
# Configures, builds and runs the comparison benchmark (bench/compare) in build/compare.
# Arguments go to the benchmark: --rounds N, --texts N.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build/compare"
generator=()
if command -v ninja >/dev/null && [ ! -f "$build/CMakeCache.txt" ]; then
    generator=(-G Ninja)
fi

cmake -S "$root" -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE=Release \
    -DQANRES_BUILD_BENCH=ON -DQANRES_BUILD_TESTS=OFF -DQANRES_BUILD_TOOLS=OFF >/dev/null
cmake --build "$build" --target compare_bench -j2
if [ ! -x "$build/bin/compare_bench" ]; then
    echo "bench-compare: compare_bench was not built (ICU, genrb or msgfmt missing?)" >&2
    exit 1
fi
exec "$build/bin/compare_bench" "$@"
