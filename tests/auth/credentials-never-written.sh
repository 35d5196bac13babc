#!/bin/bash
# credentials-never-written.sh USER PASSWORD -- COMMAND [ARGS...]
#
# Runs COMMAND (a test program driving the tool) under strace, recording every
# byte it writes to any file descriptor, with every debug category switched
# on. Fails when USER or PASSWORD (as typed or percent-encoded) appears in
# what went to a file or to the debug output; bytes to sockets (the requests
# to the cameras) are allowed to carry them. Otherwise exits with COMMAND's
# status; 77 when strace cannot run here.
set -u
(($# >= 4)) && [[ $3 == -- ]] || { echo "usage: $0 USER PASSWORD -- COMMAND..." >&2; exit 2; }
user=$1 password=$2
shift 3
here=$(cd "$(dirname "$0")" && pwd)

command -v strace >/dev/null || { echo "SKIP: strace is not installed" >&2; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if ! strace -f -qq -e trace=none -o /dev/null true 2>/dev/null; then
    echo "SKIP: strace cannot trace here" >&2
    exit 77
fi

QT_LOGGING_RULES='*.debug=true' \
    strace -f --seccomp-bpf -qq -y -xx -s 67108864 -e signal=none \
    -e trace=write,pwrite64,writev,pwritev,pwritev2 -o "$work/trace" -- "$@" >"$work/out" 2>&1
status=$?
cat "$work/out"
python3 "$here/scan_written_bytes.py" "$work/trace" "$user" "$password" || exit 1
exit $status
