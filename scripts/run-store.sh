#!/usr/bin/env bash
# Sets up a fresh machine, builds, and runs the store against the local storefront.
# With a display the store opens in a window; without one it runs offscreen, writes a
# screenshot of its home page and stops.
# Environment: DEVSTORE_PORT (default 8480; the store's built-in address uses it),
# DEVSTORE_DATA (default ~/.local/share/kiosk-2/devstore), SCREENSHOT (the offscreen picture).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default >/dev/null
# Only what it runs: the program, the storefront and the device tool, not the tests.
cmake --build --preset default -j "$(nproc)" --target kiosk2 devstore lpdevice

port="${DEVSTORE_PORT:-8480}"
data="${DEVSTORE_DATA:-${XDG_DATA_HOME:-$HOME/.local/share}/kiosk-2/devstore}"
screenshot="${SCREENSHOT:-$PWD/build/home-screen.png}"
store_pid=""

stop_store() { [ -n "$store_pid" ] && kill "$store_pid" 2>/dev/null && wait "$store_pid" 2>/dev/null; true; }
trap stop_store EXIT

if curl -fs "http://127.0.0.1:${port}/_control/health" >/dev/null 2>&1; then
  echo "run-store: a local storefront already answers on port ${port}; using it"
else
  build/default/devstore/devstore --port "${port}" --data "${data}" > build/devstore.out &
  store_pid=$!
  for _ in $(seq 1 100); do grep -q listening build/devstore.out 2>/dev/null && break; sleep 0.1; done
  grep -q listening build/devstore.out || { echo "run-store: devstore did not start" >&2; exit 1; }
  echo "run-store: local storefront on http://127.0.0.1:${port}/ (data in ${data})"
fi
store_url="http://127.0.0.1:${port}/de_de/"
# Always written: a store chosen by an earlier run on another port must not linger.
build/default/platform/host/tools/lpdevice config set /mnt/ext1/system/config/bookstore.cfg default_store "${store_url}"
# The device's account and legal services are this storefront's too.
device_root="$(build/default/platform/host/tools/lpdevice info | sed -n 's/^device root: *//p')"
build/default/platform/host/tools/lpdevice config set "${device_root}/host/services.cfg" account_service \
  "http://127.0.0.1:${port}/account/"
build/default/platform/host/tools/lpdevice config set "${device_root}/host/services.cfg" legal_service \
  "http://127.0.0.1:${port}"

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "run-store: starting kiosk-2.app in a window; close it to stop"
  build/default/app/kiosk-2.app
else
  echo "run-store: no display; running kiosk-2.app offscreen for its home page"
  rm -f "${screenshot}"
  LUMENPRESS_SCREENSHOT="${screenshot}" build/default/app/kiosk-2.app > build/kiosk-2.out 2>&1 &
  app_pid=$!
  for _ in $(seq 1 300); do [ -s "${screenshot}" ] && break; sleep 0.1; done
  sleep 3  # the rows' covers arrive after the first settled picture
  kill "${app_pid}" 2>/dev/null; wait "${app_pid}" 2>/dev/null || true
  [ -s "${screenshot}" ] || { echo "run-store: no screenshot was written; see build/kiosk-2.out" >&2; exit 1; }
  echo "run-store: the home page as the store shows it: ${screenshot}"
fi
