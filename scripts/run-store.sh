#!/usr/bin/env bash
# Sets up a fresh machine, builds, and runs what exists of the store on this PC.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)"

cat <<'NOTE'

The store application (kiosk-2.app) and the local storefront are not built yet.
What exists is the host platform: the PC's stand-in for the device's libraries.
This prepared the device root and shows the device it plays:

NOTE
build/default/platform/host/tools/lpdevice info
