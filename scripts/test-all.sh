#!/usr/bin/env bash
# The whole test suite: Linux (optimised), AddressSanitizer + UndefinedBehaviorSanitizer,
# ThreadSanitizer, the Windows build under Wine, and a short run of every fuzz target
# (QANRES_FUZZ=0 leaves it out). Installs what is missing first.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

export WINEDEBUG=-all
# One Wine server for the whole run instead of one per test process, stopped (with the
# Wine services it started) when the run ends, so nothing outlives the script.
if command -v wineserver >/dev/null; then
    trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
    wineboot -i >/dev/null 2>&1 || true
    wineserver -p >/dev/null 2>&1 || true
fi

presets=(${QANRES_PRESETS:-default asan tsan windows})
for preset in "${presets[@]}"; do
    echo "=== $preset: configure and build"
    cmake --preset "$preset" -G Ninja >/dev/null
    cmake --build --preset "$preset" -j2
    echo "=== $preset: test"
    ctest --preset "$preset"
done

# Every fuzz target for a few seconds from its seeds (about three minutes on two cores).
if [ "${QANRES_FUZZ:-1}" != 0 ]; then
    echo "=== fuzz: build and smoke run"
    scripts/fuzz-smoke.sh
fi
