#!/usr/bin/env bash
# scripts/test.sh [--qt6] [ctest options]
# Installs what is missing, builds everything and runs every test: against
# Qt 5 in build/, or with --qt6 against Qt 6 in build-qt6/.
# Network tests make private network namespaces of their own; as a normal
# user they need unprivileged user namespaces, else they report SKIPPED.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build qt=5
if [[ ${1:-} == --qt6 ]]; then
    shift
    build=build-qt6 qt=6
    scripts/deps.sh --qt6
else
    scripts/deps.sh
fi
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELTOR_QT_MAJOR=$qt
cmake --build "$build" -j"$(nproc)"
cd "$build"
ctest --output-on-failure "$@"
