#!/usr/bin/env bash
# Builds the whole suite with AddressSanitizer + UndefinedBehaviorSanitizer
# in build-asan/ and runs every test under them.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DVELTOR_SANITIZE=ON -DVELTOR_BUILD_BENCH=OFF
cmake --build build-asan -j"$(nproc)"
cd build-asan
# Qt keeps some objects until exit on purpose; leaks are not what this run is for.
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
# The package check is left out: it packs these large instrumented binaries,
# which takes minutes and checks no code of ours.
ctest --output-on-failure -E '^tst_packagecontents$' "$@"
