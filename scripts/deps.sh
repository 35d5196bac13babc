#!/usr/bin/env bash
# scripts/deps.sh [--qt6]
# Installs the Debian packages the tool, its simulator, its tests, the demo and
# the package need, and nothing when they are all there already. With --qt6,
# Qt 6 instead of Qt 5 (for cmake -DVELTOR_QT_MAJOR=6).
set -euo pipefail

qt=(qtbase5-dev qttools5-dev qttools5-dev-tools)
if [[ ${1:-} == --qt6 ]]; then
    qt=(qt6-base-dev qt6-tools-dev qt6-l10n-tools)
fi

packages=(
    # build
    cmake make g++ "${qt[@]}"
    # run: fonts for the widgets
    fonts-dejavu-core
    # tests: network namespaces, HTTP peers
    iproute2 util-linux curl python3
    # tests: every byte the tool writes, searched for credentials
    strace
    # the simulator's second opinion on upload framing
    python3-multipart
    # packaging checks
    desktop-file-utils appstream dpkg-dev file
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
        missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update
$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
