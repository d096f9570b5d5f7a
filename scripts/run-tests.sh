#!/usr/bin/env bash
# Sets up a fresh machine, builds everything and runs every test: the plain build,
# then the AddressSanitizer and ThreadSanitizer builds. Fails when any test fails.
# Usage: scripts/run-tests.sh [preset ...]   (default: default asan tsan)
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

presets=("$@")
[ ${#presets[@]} -eq 0 ] && presets=(default asan tsan)

for preset in "${presets[@]}"; do
  echo "=== ${preset}: configure and build"
  cmake --preset "${preset}" >/dev/null
  cmake --build --preset "${preset}" -j "$(nproc)"
  echo "=== ${preset}: test"
  ctest --preset "${preset}"
done
