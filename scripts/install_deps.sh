#!/usr/bin/env bash
# Installs what Kinemo is built from and tested with, as packages of Debian or Ubuntu. Does nothing when all are there.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config
  libboost-dev libboost-locale-dev libboost-filesystem-dev libboost-system-dev
  libeigen3-dev libudunits2-dev tao-pegtl-dev libyaml-dev nlohmann-json3-dev libcli11-dev libfmt-dev
  libcairo2-dev libpango1.0-dev librsvg2-dev libgdk-pixbuf-2.0-dev libgraphviz-dev fontconfig fonts-dejavu-core
  libedit-dev gettext
  libgtest-dev libgmock-dev libbenchmark-dev
  python3 ngspice
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed'; then
    missing+=("$package")
  fi
done
if [ "${#missing[@]}" -eq 0 ]; then
  echo "All ${#packages[@]} packages are installed."
  exit 0
fi

echo "Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  as_root=(sudo)
fi
"${as_root[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
