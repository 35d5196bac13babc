#!/usr/bin/env bash
# bench/hostile/run.sh [BUILD_DIR [SCENARIO]]
# Hostile cameras (garbage datagrams, reply floods, web servers that stall,
# drip, flood or lie) against the real main window in the namespace harness.
# The cameras share the tool's /24, so that the credential check is made.
# Prints one row per scenario; exit 0 when every scenario is ok.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../../build}
VELTOR_CAMSIM=$build/camsim/veltor-camsim QT_QPA_PLATFORM=offscreen \
    "$here/../../tests/netns/with-cameras.sh" --winbond 2 --haisi 2 \
    --base-ip 10.78.0.10 -- \
    "$build/bench/hostile/veltor-hostile-matrix" "${@:2}"
