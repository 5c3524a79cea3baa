#!/usr/bin/env bash
# Builds Marlune Desk (optimised) and starts it. Without marlunecom.ini in the working
# directory it talks to the built-in simulated controller.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/ensure-packages.sh
ensure_marlune_packages

cmake --preset release
cmake --build --preset release -j "$(nproc)"
desk=build/release/src/qt/marlune-desk
if [ ! -x "$desk" ]; then
  echo "The desktop windows are not built yet: build/release holds the simulator (marlune-sim) and the scenario runner (marlune-scenario)."
  exit 0
fi
exec "$desk" "$@"
