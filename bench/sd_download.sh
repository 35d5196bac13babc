#!/bin/sh
# SD card download benchmark: the tool against curl, from one simulated Haisi
# camera in a private network namespace. Usage: bench/sd_download.sh [build dir]
build=${1:-build}
here=$(cd "$(dirname "$0")" && pwd)
exec env QT_QPA_PLATFORM=offscreen VELTOR_CAMSIM="$build/camsim/veltor-camsim" \
    "$here/../tests/netns/with-cameras.sh" --haisi 1 -- "$build/bench/bench_sd_download"
