#!/usr/bin/env bash
# fuzz-smoke.sh: builds every fuzz target (clang, libFuzzer, ASan and UBSan over the whole
# library and expat, in build/fuzz) and runs each for a short while from its checked-in
# seeds with its grammar's dictionary. Fails on the first crash, leak, timeout or broken
# invariant; the input that caused it is kept in build/fuzz/artifacts/.
#
# FUZZ_SECONDS (default 15) is each target's run time; FUZZ_TARGETS (default all) names
# the targets to run. FUZZ_RUNS, when set, runs each target for that many inputs from a
# fixed random seed and its checked-in seeds alone instead: the test suite's run, which
# must not pass or fail by how fast the machine is. The grown
# corpora are kept in build/fuzz/corpus/<target>/ (the seeds in fuzz/corpus/ are never
# written), so a longer local run can pick up where this left.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
build=$root/build/fuzz
seconds=${FUZZ_SECONDS:-15}
if [ -n "${FUZZ_RUNS:-}" ]; then
    limit=(-runs="$FUZZ_RUNS" -seed=1)
    span="$FUZZ_RUNS inputs, seed 1"
else
    limit=(-max_total_time="$seconds")
    span="${seconds}s"
fi

# The fuzz build compiles expat from its source tarball, like the Windows build.
if [ ! -f build/_deps/expat_2.5.0.orig.tar.gz ]; then
    scripts/fetch-expat-source.sh
fi

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DQANRES_BUILD_FUZZ=ON \
    -DQANRES_BUILD_TESTS=OFF -DQANRES_BUILD_TOOLS=OFF >/dev/null
cmake --build "$build" -j2 --target fuzz_all

# Each target's grammars (fuzz/dict/<grammar>.dict), joined into one dictionary.
declare -A grammars=(
    [strings_fuzz]="string_text key_table"
    [key_table_fuzz]="key_table"
    [string_collection_fuzz]="string_text key_table directory"
    [lint_fmt_fuzz]="string_text key_table icon_map directory"
    [lint_lookup_fuzz]="string_text key_table icon_map directory"
    [icon_map_fuzz]="icon_map"
    [pe_cursor_table_fuzz]="cursor_table"
    [text_fuzz]="wide_text"
    [legacy_registrar_fuzz]=""
)
targets=(${FUZZ_TARGETS:-${!grammars[@]}})

mkdir -p "$build/dict" "$build/artifacts"
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
status=0
passed=0
failed=0
for target in $(printf '%s\n' "${targets[@]}" | sort); do
    dict=()
    if [ -n "${grammars[$target]}" ]; then
        : >"$build/dict/$target.dict"
        for grammar in ${grammars[$target]}; do
            cat "fuzz/dict/$grammar.dict" >>"$build/dict/$target.dict"
        done
        dict=(-dict="$build/dict/$target.dict")
    fi
    corpus=$build/corpus/$target
    # A fixed run starts from the seeds alone, as on a fresh clone.
    if [ -n "${FUZZ_RUNS:-}" ]; then
        rm -rf "$corpus"
    fi
    mkdir -p "$corpus"
    log=$build/artifacts/$target.log
    echo "=== fuzz $target ($span)"
    if "$build/bin/$target" "${dict[@]}" "${limit[@]}" -timeout=10 \
        -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$build/artifacts/$target-" \
        "$corpus" "fuzz/corpus/$target" >"$log" 2>&1; then
        executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
        last=$(grep -E '^#[0-9]+' "$log" | tail -1)
        coverage=$(echo "$last" | sed -n 's/.* cov: \([0-9]*\).*/\1/p')
        entries=$(echo "$last" | sed -n 's/.* corp: \([0-9]*\/[0-9]*[a-zA-Z]*\).*/\1/p')
        echo "    ok: $executions runs, cov $coverage, corpus $entries"
        passed=$((passed + 1))
    else
        echo "    FAILED: see $log" >&2
        grep -E 'ERROR|violated|SUMMARY|Test unit written' "$log" | head -5 >&2 || true
        status=1
        failed=$((failed + 1))
    fi
done
echo "fuzz: $passed passed, $failed failed"
exit $status
