#!/usr/bin/env bash
# bench/cli_discover/run.sh [BUILD_DIR] [cameras per family] [discover options...]
# 2,500 Winbond + 2,500 Haisi cameras spread over two networks (the namespace
# harness with --two-networks), found by `veltor-cli discover --format csv`.
# Prints cameras found against the fleet, wall time, peak RSS and CSV rows.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

if [[ ${1:-} == --measure ]]; then
    # Inside the tool's namespace: $2 the program, the rest its options.
    cli=$2
    shift 2
    out=$(mktemp -d)
    trap 'rm -rf "$out"' EXIT
    /usr/bin/time -f '%e %M %U %S' -o "$out/time" "$cli" discover --format csv "$@" \
        >"$out/cameras.csv" 2>"$out/diagnostics" || true
    read -r wall rss user system <"$out/time"
    fleet=$(grep -c '"mac"' "$VELTOR_CAMSIM_STATUS")
    rows=$(($(wc -l <"$out/cameras.csv") - 1))
    found=$(tail -n +2 "$out/cameras.csv" | cut -d, -f4 | sort -u | wc -l)
    sed 's/^/  stderr: /' "$out/diagnostics"
    echo "discover $*: cameras found: $found of $fleet"
    echo "  wall time: ${wall} s (CPU ${user} s user, ${system} s system), peak RSS of veltor-cli: ${rss} KiB, CSV rows written: $rows" \
        "($(wc -c <"$out/cameras.csv") bytes)"
    exit 0
fi

build=${1:-$here/../../build}
per_family=${2:-2500}
shift $(($# < 2 ? $# : 2))
VELTOR_CAMSIM=$build/camsim/veltor-camsim "$here/../../tests/netns/with-cameras.sh" \
    --two-networks --winbond "$per_family" --haisi "$per_family" \
    --base-ip 10.79.1.1 --base-ip 10.80.1.1 -- \
    "$here/run.sh" --measure "$build/cli/veltor-cli" "$@"
