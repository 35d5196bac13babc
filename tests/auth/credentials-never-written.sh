#!/bin/bash
# credentials-never-written.sh USER PASSWORD -- COMMAND [ARGS...]
#
# Runs COMMAND (a test program driving the tool) under strace with every debug
# category on, recording every byte it writes. Fails when USER or PASSWORD (as
# typed or percent-encoded) reaches a file or the debug output; sockets (the
# requests to the cameras) may carry them. Otherwise exits with COMMAND's
# status; 77 when strace cannot run here.
set -u
(($# >= 4)) && [[ $3 == -- ]] || { echo "usage: $0 USER PASSWORD -- COMMAND..." >&2; exit 2; }
user=$1 password=$2
shift 3
if ! strace -f -qq -e trace=none -o /dev/null true 2>/dev/null; then
    echo "SKIP: strace is missing or cannot trace here" >&2
    exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
QT_LOGGING_RULES='*.debug=true' \
    strace -f --seccomp-bpf -qq -y -xx -s 67108864 -e signal=none \
    -e trace=write,pwrite64,writev,pwritev,pwritev2 -o "$work/trace" -- "$@" >"$work/out" 2>&1
status=$?
cat "$work/out"
python3 "$(dirname "$0")/scan_written_bytes.py" "$work/trace" "$user" "$password" || exit 1
exit $status
