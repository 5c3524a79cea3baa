#!/usr/bin/env bash
# Builds with line coverage, runs every test and reports the coverage of src/ without the Qt layer,
# which the offscreen tests only touch. The report lands in build/coverage/coverage.txt.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/ensure-packages.sh
marlune_packages+=(gcovr)
ensure_marlune_packages

jobs="$(nproc)"
cmake --preset coverage
cmake --build --preset coverage -j "$jobs"
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$jobs"
gcovr --root . --filter 'src/' --exclude 'src/qt/' --gcov-ignore-parse-errors \
  --txt build/coverage/coverage.txt --print-summary build/coverage
