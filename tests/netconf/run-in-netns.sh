#!/bin/sh
# Runs a test in a private network namespace that has only loopback, with the
# broadcast and multicast routes on it, so datagrams the tool sends to
# 255.255.255.255 or 239.255.250.150 never leave this machine. The test skips
# its sending cases when VELTOR_PRIVATE_NETNS is not set.
if unshare -rn true 2>/dev/null; then
    exec unshare -rn sh -c '
        if ip link set lo up && ip route add 255.255.255.255 dev lo &&
           ip route add 224.0.0.0/4 dev lo; then
            export VELTOR_PRIVATE_NETNS=1
        else
            echo "run-in-netns: could not set up loopback routes" >&2
        fi
        exec "$@"' sh "$@"
fi
echo "run-in-netns: no private network namespace (unshare -rn failed)" >&2
exec "$@"
