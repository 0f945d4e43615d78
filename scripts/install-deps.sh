#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running need,
# when they are missing. Safe to run again.
set -euo pipefail

packages=(
    build-essential cmake git clang-format
    qtbase5-dev qtbase5-dev-tools qttools5-dev qttools5-dev-tools
    libgtest-dev libgmock-dev libbenchmark-dev
    libaravis-dev aravis-tools aravis-tools-cli libusb-1.0-0-dev pkg-config
    fontconfig fonts-dejavu-core
    dpkg-dev file
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo_cmd=()
    if [ "$(id -u)" -ne 0 ]; then
        sudo_cmd=(sudo)
    fi
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
