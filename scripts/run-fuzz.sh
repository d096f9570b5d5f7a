#!/usr/bin/env bash
# Runs every fuzz target of the fuzz preset on its corpus for a bounded time, one after the other, and fails
# when one of them finds a crash, a leak or a time-out. New inputs go to build/fuzz/corpus/<target>, findings
# to build/fuzz/findings.
# Usage: scripts/run-fuzz.sh [seconds per target, default 20] [target ...]   (after building the fuzz preset)
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${1:-20}"
shift || true
build=build/fuzz
list="${build}/tests/fuzz/targets.txt"
[ -f "${list}" ] || { echo "run-fuzz: build the fuzz preset first" >&2; exit 2; }
mkdir -p "${build}/findings"
# Targets write files at every run: their device roots go to memory where the machine has some.
scratch="$(mktemp -d /dev/shm/lp-fuzz.XXXXXX 2>/dev/null || mktemp -d)"
trap 'rm -rf "${scratch}"' EXIT
export TMPDIR="${scratch}"

failed=()
while read -r target seeds; do
  [ $# -gt 0 ] && [[ " $* " != *" ${target} "* ]] && continue
  corpus="${build}/corpus/${target}"
  mkdir -p "${corpus}"
  seed_dirs=()
  for seed in ${seeds}; do seed_dirs+=("tests/data/${seed}"); done
  echo "=== fuzz: ${target}, ${seconds} s"
  if "${build}/tests/fuzz/${target}" -max_total_time="${seconds}" -timeout=10 -rss_limit_mb=2048 \
      -print_final_stats=1 -artifact_prefix="${build}/findings/${target}-" \
      "${corpus}" "${seed_dirs[@]}" 2>"${build}/findings/${target}.log"; then
    grep -E '^stat::(number_of_executed_units|average_exec_per_sec)' "${build}/findings/${target}.log"
  else
    tail -n 40 "${build}/findings/${target}.log"
    failed+=("${target}")
  fi
done <"${list}"

if [ ${#failed[@]} -gt 0 ]; then
  echo "run-fuzz: findings in ${failed[*]} (see ${build}/findings)" >&2
  exit 1
fi
