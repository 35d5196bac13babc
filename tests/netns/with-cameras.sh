#!/bin/bash
# with-cameras.sh [--two-networks] [veltor-camsim options] -- COMMAND [ARGS...]
#
# Runs COMMAND in a private network namespace (the tool's side) and
# veltor-camsim in a child one (the cameras' side), joined by a veth pair:
# tool v0 10.78.0.1/16, cameras v1 10.78.0.2/16 plus one address per camera
# (--bind-each-ip is always passed). With --two-networks, two pairs: va0/va1
# 10.79.0.1|2/16 and vb0/vb1 10.80.0.1|2/16; camera addresses in 10.80/16 live
# on vb1, all others on va1, and the simulator hears searches on both links.
# Broadcast, multicast and unicast cross the pair; nothing reaches the host.
#
# COMMAND sees VELTOR_CAMSIM_STATUS (the fleet as JSON) and VELTOR_TOOL_IP.
# Exit status: COMMAND's; 77 (ctest's skip) when no namespace can be made
# here; 2 for bad usage. The simulator is $VELTOR_CAMSIM, else this tree's
# build/camsim/veltor-camsim.

set -u
readonly SKIP=77
readonly PREFIX=16
# One network per entry: tool side link, its address, camera side link, its address.
if [[ ${1:-} == --two-networks || ${VELTOR_NETNS_NETWORKS:-} == 2 ]]; then
    [[ ${1:-} != --two-networks ]] || shift
    export VELTOR_NETNS_NETWORKS=2
    readonly NETWORKS=("va0 10.79.0.1 va1 10.79.0.2" "vb0 10.80.0.1 vb1 10.80.0.2")
else
    readonly NETWORKS=("v0 10.78.0.1 v1 10.78.0.2")
fi
read -r _ TOOL_IP _ _ <<<"${NETWORKS[0]}"
readonly TOOL_IP

here=$(cd "$(dirname "$0")" && pwd)
camsim=${VELTOR_CAMSIM:-$here/../../build/camsim/veltor-camsim}

skip() {
    echo "with-cameras: SKIP: $*" >&2
    exit $SKIP
}

usage() {
    echo "usage: $0 [veltor-camsim options] -- COMMAND [ARGS...]" >&2
    exit 2
}

# Waits up to $2 seconds for file $1; gives up early when process $3 is gone.
wait_for() {
    local file=$1 tries=$(($2 * 20)) pid=${3:-}
    while [[ ! -e $file ]]; do
        ((tries-- > 0)) || return 1
        [[ -z $pid ]] || kill -0 "$pid" 2>/dev/null || return 1
        sleep 0.05
    done
}

split_arguments() {
    camsim_args=()
    command=()
    local seen=0
    for arg in "$@"; do
        if ((seen)); then
            command+=("$arg")
        elif [[ $arg == -- ]]; then
            seen=1
        else
            camsim_args+=("$arg")
        fi
    done
    ((seen && ${#command[@]})) || usage
}

# Host side: enter a fresh network namespace (a user namespace too when not root).
enter_tool_namespace() {
    command -v unshare >/dev/null || skip "unshare(1) is not installed"
    command -v ip >/dev/null || skip "ip(8) is not installed (Debian package iproute2)"
    [[ -x $camsim ]] || { echo "with-cameras: no simulator at $camsim" >&2; exit 2; }
    local flags=-n
    ((EUID == 0)) || flags=-rn
    unshare $flags true 2>/dev/null ||
        skip "cannot create a network namespace (unshare $flags failed; user namespaces disabled?)"
    VELTOR_NETNS_STAGE=tool VELTOR_CAMSIM=$camsim exec unshare $flags "$0" "$@"
}

# Brings up one end of every network: $1 is the field of the link names (0
# tool side, 2 camera side). The first network carries the default route.
bring_up_links() {
    local fields network link address
    for network in "${NETWORKS[@]}"; do
        read -ra fields <<<"$network"
        link=${fields[$1]} address=${fields[$1 + 1]}
        ip link set "$link" up && ip addr add "$address/$PREFIX" dev "$link" || return 1
    done
    read -ra fields <<<"${NETWORKS[0]}"
    ip route add default dev "${fields[$1]}"
}

# "addr add" lines for ip -batch: each camera address (once, when cameras
# share one) on the camera-side link of the network whose /16 holds it.
camera_address_batch() {
    local address network fields link
    sort -u "$1" | while read -r address; do
        read -ra fields <<<"${NETWORKS[0]}"
        link=${fields[2]}
        for network in "${NETWORKS[@]}"; do
            read -ra fields <<<"$network"
            [[ ${address%.*.*} == "${fields[3]%.*.*}" ]] && link=${fields[2]}
        done
        echo "addr add $address/$PREFIX dev $link"
    done
}

# Camera side: wait for the links, give every camera its address, run the fleet.
run_cameras() {
    local work=$VELTOR_NETNS_WORK every_link=()
    touch "$work/cameras-namespace"
    wait_for "$work/link-ready" 10 || exit 1
    ip link set lo up && bring_up_links 2 || exit 1
    if [[ -s $work/addresses ]]; then
        camera_address_batch "$work/addresses" | ip -batch - || exit 1
    fi
    ((${#NETWORKS[@]} == 1)) || every_link=(--every-link)
    exec "$camsim" "$@" "${every_link[@]}" --bind-each-ip --status-file "$work/fleet.json"
}

# Tool side: make the camera namespace, link it, wait for the fleet, run COMMAND.
run_tool() {
    split_arguments "$@"
    work=$(mktemp -d "${TMPDIR:-/tmp}/with-cameras.XXXXXX") || exit 1
    cameras_pid=
    trap cleanup EXIT
    trap 'exit 143' TERM INT HUP
    ip link set lo up || skip "cannot configure the namespace's loopback"
    "$camsim" "${camsim_args[@]}" --list-addresses >"$work/addresses" || exit 2
    VELTOR_NETNS_STAGE=cameras VELTOR_NETNS_WORK=$work unshare -n "$0" "${camsim_args[@]}" &
    cameras_pid=$!
    wait_for "$work/cameras-namespace" 10 "$cameras_pid" || skip "the camera namespace did not start"
    local network fields
    for network in "${NETWORKS[@]}"; do
        read -ra fields <<<"$network"
        ip link add "${fields[0]}" type veth peer name "${fields[2]}" netns "$cameras_pid" \
            2>/dev/null || skip "cannot create a veth pair here"
    done
    bring_up_links 0 || exit 1
    # A camera answering from another network's address (a misconfigured one, or
    # one answering the searcher) comes in on a link its address is not routed
    # through; strict reverse-path filtering would drop it.
    if ((${#NETWORKS[@]} > 1)); then
        for network in all default "${NETWORKS[@]%% *}"; do
            sysctl -qw "net.ipv4.conf.$network.rp_filter=0" 2>/dev/null
        done
    fi
    touch "$work/link-ready"
    if ! wait_for "$work/fleet.json" 120 "$cameras_pid"; then
        echo "with-cameras: the simulator did not get ready" >&2
        exit 1
    fi
    VELTOR_CAMSIM_STATUS=$work/fleet.json VELTOR_TOOL_IP=$TOOL_IP "${command[@]}"
}

cleanup() {
    local status=$?
    if [[ -n $cameras_pid ]] && kill -0 "$cameras_pid" 2>/dev/null; then
        kill "$cameras_pid" 2>/dev/null
        wait "$cameras_pid" 2>/dev/null
    fi
    rm -rf "$work"
    exit $status
}

case ${VELTOR_NETNS_STAGE:-} in
tool) run_tool "$@" ;;
cameras) run_cameras "$@" ;;
*)
    split_arguments "$@"
    enter_tool_namespace "$@"
    ;;
esac
