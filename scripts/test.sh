#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test.
# Network tests make private network namespaces of their own; as a normal
# user they need unprivileged user namespaces, else they report SKIPPED.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc)"
cd build
ctest --output-on-failure "$@"
