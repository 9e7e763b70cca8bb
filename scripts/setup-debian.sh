#!/usr/bin/env bash
# Installs what posprint needs to build, test and preview on Debian (12 or newer).
# Run as root (or with sudo available). Does nothing when everything is already there.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config python3
  libpugixml-dev libcli11-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libpng-dev libfreetype-dev fonts-dejavu-core libzint-dev libzxing-dev
  clang libclang-rt-dev
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "posprint: installing ${missing[*]}"
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -y -q "${missing[@]}"
