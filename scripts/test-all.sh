#!/usr/bin/env bash
# The whole test suite: Linux (optimised), AddressSanitizer + UndefinedBehaviorSanitizer,
# ThreadSanitizer, the Windows build under Wine, and a short run of every fuzz target
# (QANRES_FUZZ=0 leaves it out). Installs what is missing first.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

export WINEDEBUG=-all

# Makes the Wine prefix (WINEPREFIX, else ~/.wine, which other runs on this machine share)
# ready for the Windows build and tests, right before they run.
#  - wineboot creates or updates the prefix but returns while the processes of the prefix's
#    first start still run and before the server has written the registry to disk: the
#    script waits until the server is gone, so no test starts in a half-made prefix.
#  - Debian starts Wine servers that exit as soon as no Wine process is left, so a test run
#    would start one server per gap between tests. One server is started for the run
#    instead, ending by itself a minute after the last Wine process. It is never killed: a
#    killed server takes every Wine process of the prefix with it, other runs' tests too,
#    and those die without a word. If another run's server is up, that one is used.
#  - A trivial program must then start and end, or the run stops with Wine's own message.
prepare_wine() {
    local log
    log=$(mktemp)
    if ! wineboot -i >"$log" 2>&1; then
        echo "error: wineboot could not set up the Wine prefix:" >&2
        cat "$log" >&2
        exit 1
    fi
    if ! timeout 300 wineserver -w; then
        echo "error: the Wine prefix was still in use 5 minutes after wineboot" >&2
        exit 1
    fi
    local status=0
    wineserver -p60 || status=$?
    if [ "$status" -ne 0 ] && [ "$status" -ne 2 ]; then # 2: another run's server is up
        echo "error: could not start the Wine server (status $status)" >&2
        exit 1
    fi
    if ! wine cmd /c exit 0 >"$log" 2>&1; then
        echo "error: Wine cannot start a program in its prefix:" >&2
        cat "$log" >&2
        exit 1
    fi
    rm -f "$log"
}

presets=(${QANRES_PRESETS:-default asan tsan windows})
for preset in "${presets[@]}"; do
    echo "=== $preset: configure and build"
    # The Windows build already runs the tool under Wine (it writes the example cursor
    # table), so the prefix is made ready before it.
    if [ "$preset" = windows ]; then
        prepare_wine
    fi
    cmake --preset "$preset" -G Ninja >/dev/null
    cmake --build --preset "$preset" -j2
    echo "=== $preset: test"
    ctest --preset "$preset"
done

# Every fuzz target for a fixed number of inputs from its seeds and a fixed random seed, not
# for a time, so that a slow machine runs as much as a fast one (about a minute on two cores).
if [ "${QANRES_FUZZ:-1}" != 0 ]; then
    echo "=== fuzz: build and smoke run"
    FUZZ_RUNS=${FUZZ_RUNS:-20000} scripts/fuzz-smoke.sh
fi
