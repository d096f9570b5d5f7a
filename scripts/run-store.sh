#!/usr/bin/env bash
# Sets up a fresh machine, builds, and runs what exists of the store on this PC: for now the
# local storefront, in the foreground until Ctrl-C.
# Environment: DEVSTORE_PORT (default 8480), DEVSTORE_DATA (default ~/.local/share/kiosk-2/devstore).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)"

port="${DEVSTORE_PORT:-8480}"
data="${DEVSTORE_DATA:-${XDG_DATA_HOME:-$HOME/.local/share}/kiosk-2/devstore}"

cat <<NOTE

The store application (kiosk-2.app) is not built yet. What runs now is the local storefront,
devstore, with its catalogue on http://127.0.0.1:${port}/ (the page there lists the feeds).
Browse it with any HTTP client, for example:

  curl http://127.0.0.1:${port}/de_de/lpress/opds/home

Data folder: ${data}. Stop with Ctrl-C.

NOTE
exec build/default/devstore/devstore --port "${port}" --data "${data}"
