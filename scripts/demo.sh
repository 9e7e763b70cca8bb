#!/usr/bin/env bash
# The main job: installs what is needed, builds posprint, and prints the sample receipt
# on the built-in virtual printer, writing its preview to out/receipt.png. Where the
# virtual printer is not built, the receipt's bytes go to out/receipt.bin and are shown as hex.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-debian.sh

cmake -S . -B build -G Ninja >/dev/null
cmake --build build -j"$(nproc 2>/dev/null || echo 2)" --target posprint posprint_drivers
mkdir -p out

args=(run --model TMT70 --params examples/receipt.params --logo-dir examples)
if build/tools/posprint/posprint run --help 2>/dev/null | grep -q -- '--preview'; then
  build/tools/posprint/posprint "${args[@]}" --port sim: --preview out/receipt.png examples/receipt.xml
  echo "preview: out/receipt.png"
else
  build/tools/posprint/posprint "${args[@]}" --port file:out/receipt.bin examples/receipt.xml || true
  od -A x -t x1z -v out/receipt.bin | head -n 60
  echo "bytes: out/receipt.bin"
fi
