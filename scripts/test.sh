#!/usr/bin/env bash
# Builds everything from scratch and runs every test: first the debug build (warnings are
# errors) with the unit tests, the scenario suite and the offscreen Qt tests; then the fault
# sweep over the scenario suite; then the asan preset (clang, AddressSanitizer and UBSan) with
# the whole suite again and each fuzz target for a short while.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/ensure-packages.sh
ensure_marlune_packages

jobs="$(nproc)"
cmake --preset dev
cmake --build --preset dev -j "$jobs"
QT_QPA_PLATFORM=offscreen ctest --preset dev -j "$jobs"

# The sweep's broken rules, one line per scenario and rule, must be the known ones exactly.
sweep_log="build/dev/fault-sweep.log"
build/dev/src/headless/marlune-scenario --fault-sweep tests/scenarios >"$sweep_log" || true
tail -n 2 "$sweep_log"
grep ': scenario "' "$sweep_log" \
  | sed -E 's/^([^:]*):[0-9]+: /\1: /; s/: (exchange [0-9]+ of [0-9]+ failing|without a fault): /: /' \
  | sed -E 's/: [0-9]+ messages where .*$/: more than one message for one failed exchange/' \
  | LC_ALL=C sort -u >build/dev/fault-sweep-found.txt
if ! grep -v '^#' tests/fault-sweep-known.txt | LC_ALL=C sort -u | diff - build/dev/fault-sweep-found.txt; then
  echo "The fault sweep's findings differ from tests/fault-sweep-known.txt (< known, > found); see $sweep_log." >&2
  exit 1
fi

cmake --preset asan
cmake --build --preset asan -j "$jobs"
ctest --preset asan -j "$jobs"
bash scripts/fuzz.sh "${MARLUNE_FUZZ_SECONDS:-3}"
