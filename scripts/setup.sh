#!/usr/bin/env bash
# Installs the Debian packages the project needs (only those missing), then
# configures and builds. Usage: scripts/setup.sh BUILD_DIR [cmake options...]
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-"$here/build"}
shift || true

packages=(build-essential cmake ninja-build ccache pkg-config
  qtbase5-dev libqt5sql5-sqlite libqt5svg5-dev qt5-image-formats-plugins
  fonts-wqy-microhei libcivetweb-dev libxapian-dev libqt5charts5-dev
  libxlsxwriter-dev libminizip-dev libcsv-dev)
missing=()
packages+=(libsodium-dev) # password hashing of the cloud service
packages+=(libqt5sql5-psql postgresql-15) # the cloud service on PostgreSQL, and its tests
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  echo "setup: installing ${missing[*]}"
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
cmake --build "$build" -j "$(nproc)"
