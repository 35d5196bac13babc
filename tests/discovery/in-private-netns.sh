#!/bin/sh
# Runs a test in a private network namespace whose loopback carries broadcasts
# and the HDS group, so nothing it sends leaves this machine; without one it
# runs with VELTOR_NETNS_UNAVAILABLE set to the reason and skips those cases.
setup='ip link set lo up && ip link set lo multicast on &&
       ip route add 239.0.0.0/8 dev lo && ip route add 255.255.255.255/32 dev lo'
for flags in -n -rn; do
    if unshare $flags true 2>/dev/null; then
        exec unshare $flags sh -c "
            if ! ( $setup ) 2>/dev/null; then
                export VELTOR_NETNS_UNAVAILABLE='cannot set up loopback routes (is iproute2 installed?)'
            fi
            exec \"\$0\" \"\$@\"" "$@"
    fi
done
VELTOR_NETNS_UNAVAILABLE='unshare -n failed: no network namespaces for this user' exec "$@"
