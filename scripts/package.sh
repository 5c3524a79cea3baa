#!/usr/bin/env bash
# Builds the optimised program and makes the Debian package marlune-desk_VERSION_amd64.deb in
# build/release; install it with `apt install ./build/release/marlune-desk_*.deb`.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/ensure-packages.sh
ensure_marlune_packages

cmake --preset release
cmake --build --preset release -j "$(nproc)"
(cd build/release && cpack -G DEB)
ls build/release/marlune-desk_*_amd64.deb
