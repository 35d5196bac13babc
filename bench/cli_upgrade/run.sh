#!/usr/bin/env bash
# bench/cli_upgrade/run.sh [BUILD_DIR] [cameras per family] [file MiB] [parallel...]
# `veltor-cli upgrade --firmware --expect-version` of every camera of a
# simulated fleet (the namespace harness; cameras restart for 1 s after an
# upload), once per --parallel value. Prints per run: targets verified, wall
# time, file bytes per second over all cameras, CPU and peak RSS of veltor-cli,
# and each camera's SHA-256 of what it stored against the file's.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

if [[ ${1:-} == --measure ]]; then
    # Inside the tool's namespace: $2 the program, $3 the file MiB, the rest parallel values.
    cli=$2 mib=$3
    shift 3
    out=$(mktemp -d)
    trap 'rm -rf "$out"' EXIT
    head -c $((mib << 20)) /dev/urandom >"$out/fw.bin"
    sha=$(sha256sum "$out/fw.bin" | cut -d' ' -f1)
    fleet=$(grep -c '"mac"' "$VELTOR_CAMSIM_STATUS")
    for parallel in "$@"; do
        # A fresh run uploads whatever the cameras report; each restarts silent
        # for 1 s after the upload, so verification waits on every later run too.
        VELTOR_PASSWORD=admin /usr/bin/time -f '%e %M %U %S' -o "$out/time" \
            "$cli" upgrade --firmware --file "$out/fw.bin" --user admin \
            --all-family winbond --parallel "$parallel" --expect-version 2.2.0.1 \
            --state-file "$out/state.json" >"$out/summary" 2>"$out/progress" || true
        VELTOR_PASSWORD=admin /usr/bin/time -f '%e %M %U %S' -o "$out/time2" \
            "$cli" upgrade --firmware --file "$out/fw.bin" --user admin \
            --all-family haisi --parallel "$parallel" --expect-version 2.2.0.1 \
            --state-file "$out/state2.json" >>"$out/summary" 2>>"$out/progress" || true
        read -r wall rss user system <"$out/time"
        read -r wall2 rss2 user2 system2 <"$out/time2"
        verified=$(grep -c '"verified"' "$out/state.json" "$out/state2.json" | awk -F: '{s+=$2} END {print s}')
        matching=0
        while read -r ip port; do
            got=$(curl -s "http://$ip:$port/camsim/uploads" | grep -o '"sha256": *"[0-9a-f]*"' | tail -1 | grep -o '[0-9a-f]\{64\}' || true)
            [[ $got == "$sha" ]] && matching=$((matching + 1))
        done < <(python3 -c 'import json,os; [print(c["ip"], c["httpPort"]) for c in json.load(open(os.environ["VELTOR_CAMSIM_STATUS"]))["cameras"]]')
        total=$(awk -v a="$wall" -v b="$wall2" 'BEGIN {print a + b}')
        rate=$(awk -v n="$fleet" -v m="$mib" -v t="$total" 'BEGIN {printf "%.1f", n * m / t}')
        echo "parallel $parallel, $fleet cameras, ${mib} MiB file: verified $verified of $fleet, SHA-256 matching at $matching cameras"
        echo "  wall time ${total} s (Winbond ${wall} s, Haisi ${wall2} s; search and 1 s restarts included), ${rate} MiB/s of file over all cameras"
        echo "  veltor-cli peak RSS ${rss} / ${rss2} KiB, CPU $(awk -v a="$user" -v b="$system" -v c="$user2" -v d="$system2" 'BEGIN {print a + b + c + d}') s"
        grep -E "^[0-9]+ " "$out/summary" | sed "s/^/  /"
        grep "^uploads:" "$out/progress" | sed "s/^/  /"
        # The fleet keeps the new version; the next run must upload again.
        rm -f "$out/state.json" "$out/state2.json"
    done
    exit 0
fi

build=${1:-$here/../../build}
per_family=${2:-10}
mib=${3:-8}
shift $(($# < 3 ? $# : 3))
parallels=("$@")
((${#parallels[@]})) || parallels=(1 4 8)
VELTOR_CAMSIM=$build/camsim/veltor-camsim "$here/../../tests/netns/with-cameras.sh" \
    --winbond "$per_family" --haisi "$per_family" --base-ip 10.78.0.11 \
    --upgrade-version 2.2.0.1 --upgrade-reboot 1000 -- \
    "$here/run.sh" --measure "$build/cli/veltor-cli" "$mib" "${parallels[@]}"
