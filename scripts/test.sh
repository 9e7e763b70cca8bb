#!/usr/bin/env bash
# Builds posprint and runs the whole test suite twice: a normal build, and a build with
# AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-debian.sh

jobs=$(nproc 2>/dev/null || echo 2)

echo "== build and test =="
cmake -S . -B build -G Ninja -DPOSPRINT_WERROR=ON >/dev/null
cmake --build build -j"$jobs"
ctest --test-dir build --output-on-failure -j"$jobs"

echo "== sanitizer build (address, undefined behaviour) and test =="
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DPOSPRINT_SANITIZE=ON -DPOSPRINT_WERROR=ON >/dev/null
cmake --build build-asan -j"$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build-asan --output-on-failure -j"$jobs"
