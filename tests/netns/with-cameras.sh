#!/bin/bash
# with-cameras.sh [--two-networks] [veltor-camsim options] -- COMMAND [ARGS...]
# Runs COMMAND in a private network namespace, veltor-camsim ($VELTOR_CAMSIM,
# --bind-each-ip) in a child one, joined by veth v0 10.78.0.1/16 - v1
# 10.78.0.2/16 (--two-networks: va0/va1 10.79/16 and vb0/vb1 10.80/16, camera
# addresses on the link of their /16). COMMAND gets VELTOR_CAMSIM_STATUS (the
# fleet file) and VELTOR_TOOL_IP; exit 77 when no namespace can be made here.
set -u
if [[ ${1:-} == --two-networks || ${VELTOR_NETNS_NETWORKS:-} == 2 ]]; then
    [[ ${1:-} != --two-networks ]] || shift
    export VELTOR_NETNS_NETWORKS=2
    readonly NETWORKS=("va0 10.79.0.1 va1 10.79.0.2" "vb0 10.80.0.1 vb1 10.80.0.2")
else
    readonly NETWORKS=("v0 10.78.0.1 v1 10.78.0.2")
fi
read -r _ TOOL_IP _ _ <<<"${NETWORKS[0]}"
camsim=${VELTOR_CAMSIM:-$(dirname "$0")/../../build/camsim/veltor-camsim}

skip() { echo "with-cameras: SKIP: $*" >&2 && exit 77; }

# Waits up to $2 seconds for file $1; gives up early when process $3 is gone.
wait_for() {
    local tries=$(($2 * 20))
    while [[ ! -e $1 ]]; do
        ((tries-- > 0)) || return 1
        [[ -z ${3:-} ]] || kill -0 "$3" 2>/dev/null || return 1
        sleep 0.05
    done
}

split_arguments() {
    local i
    for ((i = 1; i <= $#; i++)); do [[ ${!i} != -- ]] || break; done
    camsim_args=("${@:1:i-1}") command=("${@:i+1}")
    ((i <= $# && ${#command[@]})) || { echo "usage: $0 [veltor-camsim options] -- COMMAND [ARGS...]" >&2; exit 2; }
}

# One end of every network: $1 is the link name's field (0 tool, 2 cameras).
# The first network carries the default route.
bring_up_links() {
    local f network
    for network in "${NETWORKS[@]}"; do
        read -ra f <<<"$network"
        ip link set "${f[$1]}" up && ip addr add "${f[$1 + 1]}/16" dev "${f[$1]}" || return 1
    done
    read -ra f <<<"${NETWORKS[0]}"
    ip route add default dev "${f[$1]}"
}

# Camera side: each camera address once, on the link of the network holding it.
run_cameras() {
    local work=$VELTOR_NETNS_WORK every_link=() address network f link
    touch "$work/cameras-namespace"
    wait_for "$work/link-ready" 10 || exit 1
    ip link set lo up && bring_up_links 2 || exit 1
    sort -u "$work/addresses" | while read -r address; do
        read -ra f <<<"${NETWORKS[0]}"
        link=${f[2]}
        for network in "${NETWORKS[@]}"; do
            read -ra f <<<"$network"
            [[ ${address%.*.*} == "${f[3]%.*.*}" ]] && link=${f[2]}
        done
        echo "addr add $address/16 dev $link"
    done | ip -batch - || exit 1
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
    local network f
    for network in "${NETWORKS[@]}"; do
        read -ra f <<<"$network"
        ip link add "${f[0]}" type veth peer name "${f[2]}" netns "$cameras_pid" 2>/dev/null ||
            skip "cannot create a veth pair here"
    done
    bring_up_links 0 || exit 1
    # A camera answering from another network's address comes in on a link its
    # address is not routed through; strict reverse-path filtering would drop it.
    for network in all default "${NETWORKS[@]%% *}"; do
        ((${#NETWORKS[@]} == 1)) || sysctl -qw "net.ipv4.conf.$network.rp_filter=0" 2>/dev/null
    done
    touch "$work/link-ready"
    wait_for "$work/fleet.json" 120 "$cameras_pid" ||
        { echo "with-cameras: the simulator did not get ready" >&2; exit 1; }
    VELTOR_CAMSIM_STATUS=$work/fleet.json VELTOR_TOOL_IP=$TOOL_IP "${command[@]}"
}

cleanup() {
    local status=$?
    [[ -z $cameras_pid ]] || { kill "$cameras_pid" && wait "$cameras_pid"; } 2>/dev/null
    rm -rf "$work"
    exit $status
}

case ${VELTOR_NETNS_STAGE:-} in
tool) run_tool "$@" ;;
cameras) run_cameras "$@" ;;
*)
    split_arguments "$@"
    command -v unshare >/dev/null && command -v ip >/dev/null || skip "unshare(1) or ip(8) missing"
    [[ -x $camsim ]] || { echo "with-cameras: no simulator at $camsim" >&2; exit 2; }
    flags=-n
    ((EUID == 0)) || flags=-rn
    unshare $flags true 2>/dev/null || skip "cannot create a network namespace (unshare $flags)"
    VELTOR_NETNS_STAGE=tool VELTOR_CAMSIM=$camsim exec unshare $flags "$0" "$@"
    ;;
esac
