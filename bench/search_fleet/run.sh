#!/usr/bin/env bash
# bench/search_fleet/run.sh [BUILD_DIR] [fleet size per family]
# 500 Winbond + 500 Haisi cameras, all answering within 100 ms of each search
# round, against the real main window in the namespace harness.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../../build}
per_family=${2:-500}
VELTOR_CAMSIM=$build/camsim/veltor-camsim QT_QPA_PLATFORM=offscreen \
    "$here/../../tests/netns/with-cameras.sh" --winbond "$per_family" --haisi "$per_family" \
    --spread 100 -- "$build/bench/search_fleet/bench_search_fleet"
