#!/usr/bin/env bash
# Writes a picture of every view of the store into one folder, named after the view: the store
# runs offscreen against a local storefront of its own, with a device root of its own.
# Usage: scripts/screenshots.sh [folder]   (default: build/screens)
set -euo pipefail
cd "$(dirname "$0")/.."

out="$(realpath -m "${1:-build/screens}")"
bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" --target kiosk2 devstore screen_tour lpdevice

work="$(mktemp -d)"
store_pid=""
cleanup() {
  [ -n "$store_pid" ] && kill "$store_pid" 2>/dev/null && wait "$store_pid" 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT

build/default/devstore/devstore --port 0 --data "$work/devstore" > "$work/devstore.out" &
store_pid=$!
for _ in $(seq 1 100); do grep -q listening "$work/devstore.out" 2>/dev/null && break; sleep 0.1; done
base="$(sed -n 's|devstore: listening on \(http://[^ ]*\)|\1|p' "$work/devstore.out")"
[ -n "$base" ] || { echo "screenshots: devstore did not start" >&2; exit 1; }

mkdir -p "$out"
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software LUMENPRESS_LOG_LEVEL="${LUMENPRESS_LOG_LEVEL:-1}"
# The device's account and legal services are this storefront's too.
LUMENPRESS_DEVICE_ROOT="$work/device" build/default/platform/host/tools/lpdevice config set \
  "$work/device/host/services.cfg" account_service "${base}account/" > /dev/null
LUMENPRESS_DEVICE_ROOT="$work/device" build/default/platform/host/tools/lpdevice config set \
  "$work/device/host/services.cfg" legal_service "${base%/}" > /dev/null
LUMENPRESS_DEVICE_ROOT="$work/device" build/default/app/screen_tour --store "${base}de_de/" --out "$out"
# The same store when it cannot be reached: nothing listens on the storefront's port any more.
kill "$store_pid"; wait "$store_pid" 2>/dev/null || true; store_pid=""
LUMENPRESS_DEVICE_ROOT="$work/device-offline" build/default/app/screen_tour --store "${base}de_de/" --out "$out" \
  --prefix "unreachable-" --views home
echo "screenshots: ${out}"
