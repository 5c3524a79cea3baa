#!/usr/bin/env bash
# Builds everything from scratch (debug, warnings are errors) and runs every test:
# unit tests, the scenario suite and the offscreen Qt tests.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/ensure-packages.sh
ensure_marlune_packages

jobs="$(nproc)"
cmake --preset dev
cmake --build --preset dev -j "$jobs"
QT_QPA_PLATFORM=offscreen ctest --preset dev -j "$jobs"
