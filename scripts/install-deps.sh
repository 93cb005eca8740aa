#!/usr/bin/env bash
# Installs what the project builds and runs with, from Debian 12's packages.
# Safe to run again: it installs only what is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config binutils
  qtbase5-dev qtbase5-dev-tools libqt5svg5-dev
  nlohmann-json3-dev libspdlog-dev libfmt-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  fonts-dejavu-core fonts-noto-color-emoji
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
  SUDO=sudo
else
  SUDO=
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
