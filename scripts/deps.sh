#!/usr/bin/env bash
# Installs the Debian packages the tool, its simulator and its tests need,
# and nothing when they are all there already.
set -euo pipefail

packages=(
    # build
    cmake make g++ qtbase5-dev qttools5-dev qttools5-dev-tools
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
