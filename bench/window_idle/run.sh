#!/usr/bin/env bash
# bench/window_idle/run.sh [BUILD_DIR]
# CPU against wall time of the window's waits (a search nobody answers, the
# Winbond reboot progress), offscreen in a private network namespace.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../../build}
QT_QPA_PLATFORM=offscreen "$here/../../tests/discovery/in-private-netns.sh" \
    "$build/bench/window_idle/bench_window_idle"
