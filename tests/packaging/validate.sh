#!/bin/sh
# validate.sh desktop|metainfo FILE
# Runs the validator that menus or software centres apply to our file. Exits
# 77, which ctest reports as skipped, when that validator is not installed.
set -u
kind=$1
file=$2
case $kind in
desktop) tool=desktop-file-validate package=desktop-file-utils ;;
metainfo) tool=appstreamcli package=appstream ;;
*) echo "usage: $0 desktop|metainfo FILE" >&2; exit 2 ;;
esac
if ! command -v "$tool" >/dev/null 2>&1; then
    echo "SKIP: $tool not found (Debian package $package)"
    exit 77
fi
[ -f "$file" ] || { echo "missing: $file"; exit 1; }

case $kind in
desktop)
    out=$(desktop-file-validate "$file" 2>&1)
    rc=$?
    echo "$out"
    # It exits 0 on warnings; ours must be clean of them too (hints are fine).
    [ $rc -eq 0 ] || exit 1
    if echo "$out" | grep -Eq ': (warning|error):'; then exit 1; fi
    ;;
metainfo)
    # --strict: infos fail too, such as a missing content rating.
    appstreamcli validate --no-net --no-color --strict --explain "$file" || exit 1
    ;;
esac
exit 0
