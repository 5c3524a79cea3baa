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

# Each scenario again with each of its exchanges failing in turn: no crash, every link closed,
# no half-written file, at most one message per failed exchange.
build/dev/src/headless/marlune-scenario --fault-sweep tests/scenarios >build/dev/fault-sweep.log || {
  grep -v '^fault sweep' build/dev/fault-sweep.log | tail -n 40
  exit 1
}
tail -n 2 build/dev/fault-sweep.log

cmake --preset asan
cmake --build --preset asan -j "$jobs"
ctest --preset asan -j "$jobs"
bash scripts/fuzz.sh "${MARLUNE_FUZZ_SECONDS:-3}"
