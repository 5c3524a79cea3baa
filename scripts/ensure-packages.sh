#!/usr/bin/env bash
# Installs the Debian packages that building and testing Marlune Desk need, when any is missing.
# Sourced by the run and test scripts; runs apt-get only when something is missing.
set -euo pipefail

marlune_packages=(
  build-essential cmake g++ git clang-14 libclang-rt-14-dev
  qt6-base-dev qt6-serialport-dev qt6-charts-dev qt6-qpa-plugins
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  xvfb xauth xdotool libxcb1-dev pkg-config
  dpkg-dev lintian
)

ensure_marlune_packages() {
  local missing=()
  local p
  for p in "${marlune_packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  if [ "${#missing[@]}" -gt 0 ]; then
    echo "Installing missing packages: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
      echo "Run this as root (or install the packages above) to go on." >&2
      exit 1
    fi
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
  fi
}
