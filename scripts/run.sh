#!/usr/bin/env bash
# scripts/run.sh [--demo] [tool arguments]
#
# Installs what is missing (scripts/deps.sh: apt-get, only for packages not yet
# installed, through sudo when not root), configures and builds in ./build and
# starts VELTOR Camera Tool.
#
# --demo also starts simulated cameras (3 Winbond + 3 Haisi) so that Search
# lists rows at once. How, in order of preference:
#
# 1. Private network (root, or a normal user where unprivileged user
#    namespaces are allowed, as on a stock Debian 12): the tool runs in a
#    network namespace of its own and the cameras in a second one behind a
#    virtual cable (tests/netns/with-cameras.sh). Searches then never reach the
#    real LAN and every camera has its own address (10.78.0.11 on), so everything
#    works as with real cameras: search, credential check, configuration,
#    upload, SD card. The window still shows on the desktop: X11's and
#    Wayland's sockets are files, which any network namespace can reach. What
#    does not work is opening a camera's web page by double click: the desktop's
#    browser runs outside the private network.
# 2. Otherwise (namespaces forbidden): cameras on the loopback addresses
#    127.78.1.x whose replies never leave this host (Winbond ones to loopback's
#    broadcast 127.255.255.255, Haisi ones to the group with TTL 0). Searches are found, but the tool's
#    search datagrams go out to the real network as they always do, and Winbond
#    cameras cannot serve HTTP (their port must fit in one byte, and ports below
#    1024 need root).
set -euo pipefail
cd "$(dirname "$0")/.."

demo=0
if [[ ${1:-} == --demo ]]; then
    demo=1
    shift
fi

scripts/deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)"

tool=build/app/veltor-camera-tool
camsim=build/camsim/veltor-camsim
((demo)) || exec "$tool" "$@"

fleet=(--winbond 3 --haisi 3 --name-prefix "Demo-")
echo "Demo: 6 simulated cameras on a private network; press Search."
status=0
# On the tool's /24 (the tool is 10.78.0.1), so credential checks really run.
VELTOR_CAMSIM=$camsim tests/netns/with-cameras.sh "${fleet[@]}" --base-ip 10.78.0.11 \
    -- "$tool" "$@" || status=$?
((status == 77)) || exit $status

echo "Demo: no private network possible here; simulated cameras on loopback instead."
echo "      (Winbond cameras are listed but serve no web pages in this mode.)"
"$camsim" "${fleet[@]}" --base-ip 127.78.1.1 --bind-each-ip --http-port 8080 \
    --host-only &
camsim_pid=$!
trap 'kill $camsim_pid 2>/dev/null' EXIT
sleep 1
"$tool" "$@"
