#!/usr/bin/env bash
# Builds every fuzz entry and runs each for some seconds:  scripts/fuzz.sh SECONDS
# An input that breaks a decoder is kept in build/fuzz/findings.
set -euo pipefail

seconds=$1
cd "$(dirname "${BASH_SOURCE[0]}")/.."
cmake --preset fuzz
cmake --build --preset fuzz
mkdir -p build/fuzz/findings

run_entry() {
  local entry=$1
  local name=${entry##*/fuzz_}
  local corpus=build/fuzz/corpus/$name
  mkdir -p "$corpus"
  local seeds=build/fuzz/seeds/$name
  [ -d "$seeds" ] || seeds=
  echo "Fuzzing $name for $seconds seconds"
  "$entry" "$corpus" $seeds -max_total_time="$seconds" -timeout=5 -rss_limit_mb=512 \
    -artifact_prefix="build/fuzz/findings/$name-" -verbosity=0 -print_final_stats=0
}
export -f run_entry
export seconds
find build/fuzz/bin -name 'fuzz_*' -type f -executable -print0 |
  xargs -0 -n 1 -P "$(nproc)" bash -c 'run_entry "$1"' run_entry
