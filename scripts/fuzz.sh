#!/usr/bin/env bash
# scripts/fuzz.sh [SECONDS [TARGET...]]: builds the fuzz targets (the asan preset: clang,
# AddressSanitizer and UBSan) and runs each (or the named ones: status_reply, number, ...) over
# its seed corpus in tests/fuzz/corpus for SECONDS (default 60), one after the other.
# With MARLUNE_FUZZ_RUNS=N each runs N executions instead. A finding stops the script with the
# input kept as build/asan/fuzz-findings/<target>/crash-*; inputs that reached new code are kept
# in build/asan/fuzz-corpus/<target>, never in the seed corpus.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
shift || true
targets=("$@")
if [ "${#targets[@]}" -eq 0 ]; then
  for seeds in tests/fuzz/corpus/*/; do
    targets+=("$(basename "$seeds")")
  done
fi
jobs="$(nproc)"

cmake --preset asan >/dev/null
cmake --build --preset asan --target fuzz_targets -j "$jobs"

# The targets that read files write one per input: in memory where the machine allows.
if [ -w /dev/shm ]; then
  export TMPDIR=/dev/shm
fi
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
limit=(-max_total_time="$seconds")
if [ -n "${MARLUNE_FUZZ_RUNS:-}" ]; then
  limit=(-runs="$MARLUNE_FUZZ_RUNS")
fi

for target in "${targets[@]}"; do
  # Whole paths: the targets that read files work in a directory of their own.
  seeds="$PWD/tests/fuzz/corpus/$target"
  work="$PWD/build/asan/fuzz-corpus/$target"
  findings="$PWD/build/asan/fuzz-findings/$target"
  log="$findings.log"
  mkdir -p "$work" "$findings"
  if ! "build/asan/fuzz/${target}_fuzz" "${limit[@]}" -timeout=10 -print_final_stats=1 \
       -artifact_prefix="$findings/" "$work" "$seeds" >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "fuzz: $target found a fault; the input is in $findings/" >&2
    exit 1
  fi
  runs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")"
  echo "fuzz: $target: ${runs:-?} executions, clean"
done
