#!/usr/bin/env bash
# Builds posprint and runs the whole test suite twice: a normal build, and a build with
# AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup-debian.sh

jobs=$(nproc 2>/dev/null || echo 2)

echo "== build and test =="
cmake -S . -B build -G Ninja -DPOSPRINT_TESTS=ON -DPOSPRINT_WERROR=ON >/dev/null
cmake --build build -j"$jobs"
ctest --test-dir build --output-on-failure -j"$jobs"

echo "== install, and build the example host against the installed package =="
stage="$PWD/build/stage"
rm -rf "$stage" build/example-host
cmake --install build --prefix "$stage" >/dev/null
cmake -S examples/host -B build/example-host -G Ninja -DCMAKE_PREFIX_PATH="$stage" >/dev/null
cmake --build build/example-host
LD_LIBRARY_PATH="$stage/lib" build/example-host/print_ticket "file:$PWD/build/example-host/ticket.bin"
test -s build/example-host/ticket.bin

echo "== sanitizer build (address, undefined behaviour) and test =="
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DPOSPRINT_SANITIZE=ON -DPOSPRINT_TESTS=ON -DPOSPRINT_WERROR=ON >/dev/null
cmake --build build-asan -j"$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build-asan --output-on-failure -j"$jobs"
