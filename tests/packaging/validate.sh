#!/bin/sh
# validate.sh desktop|metainfo FILE
# Runs the validator that menus or software centres apply to our file; exits
# 77 (skipped for ctest) when it is not installed.
case $1 in
desktop) tool=desktop-file-validate package=desktop-file-utils ;;
metainfo) tool=appstreamcli package=appstream ;;
*) echo "usage: $0 desktop|metainfo FILE" >&2; exit 2 ;;
esac
command -v "$tool" >/dev/null 2>&1 || { echo "SKIP: $tool not found (Debian package $package)"; exit 77; }
[ -f "$2" ] || { echo "missing: $2"; exit 1; }
if [ "$1" = desktop ]; then
    # It exits 0 on warnings; ours must be clean of them too (hints are fine).
    out=$(desktop-file-validate "$2" 2>&1) || { echo "$out"; exit 1; }
    echo "$out"
    ! echo "$out" | grep -Eq ': (warning|error):'
else
    # --strict: infos fail too, such as a missing content rating.
    appstreamcli validate --no-net --no-color --strict --explain "$2"
fi
