#!/usr/bin/env bash
# Sets up a fresh machine, builds everything and runs every test: the plain build, then the AddressSanitizer
# and ThreadSanitizer builds, then each fuzz target for 20 s. Fails when any test fails or a fuzz target finds
# anything.
# Usage: scripts/run-tests.sh [preset ...]   (default: default asan tsan fuzz)
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

presets=("$@")
[ ${#presets[@]} -eq 0 ] && presets=(default asan tsan fuzz)

for preset in "${presets[@]}"; do
  echo "=== ${preset}: configure and build"
  cmake --preset "${preset}" >/dev/null
  cmake --build --preset "${preset}" -j "$(nproc)"
  if [ "${preset}" = fuzz ]; then
    bash scripts/run-fuzz.sh 20
    continue
  fi
  echo "=== ${preset}: test"
  ctest --preset "${preset}"
done
