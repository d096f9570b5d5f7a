#!/usr/bin/env bash
# Installs the Debian packages that building, running and testing the store need.
# Idempotent: when everything is present it only checks and returns.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config git ca-certificates
  qtbase5-dev qtdeclarative5-dev qtquickcontrols2-5-dev libqt5svg5-dev
  qml-module-qtquick2 qml-module-qtquick-window2 qml-module-qtquick-layouts
  qml-module-qtquick-controls2 qml-module-qtqml-models2 qml-module-qttest
  libqt5sql5-sqlite
  libjsoncpp-dev libcurl4-openssl-dev libssl-dev libboost-dev libpugixml-dev
  libsqlite3-dev libqrencode-dev libcpp-httplib-dev zlib1g-dev libbrotli-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth clang-format curl
  clang libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all ${#packages[@]} packages present"
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q
"${sudo_cmd[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q "${missing[@]}"
