#!/usr/bin/env bash
# Builds every fuzz entry and runs each for some seconds:  scripts/fuzz.sh SECONDS
# An input that breaks something is kept in build/fuzz/findings; once mended, it belongs into
# fuzz/inputs/NAME, where it becomes a test.
set -euo pipefail

seconds=$1
cd "$(dirname "${BASH_SOURCE[0]}")/.."
cmake --preset fuzz
cmake --build --preset fuzz
mkdir -p build/fuzz/findings
export LSAN_OPTIONS="suppressions=$PWD/tests/leaks_of_libraries.txt:print_suppressions=0"

# No input may ask for 128 MB at once or take longer than 2 s. The whole process needs more: the
# sanitizers' shadow and the memory that they hold back for a while after it was freed.
export ASAN_OPTIONS=quarantine_size_mb=32
run_entry() {
  local entry=$1
  local name=${entry##*/fuzz_}
  local corpus=build/fuzz/corpus/$name
  mkdir -p "$corpus"
  local folders=("$corpus")
  for folder in "build/fuzz/seeds/$name" "fuzz/inputs/$name"; do
    [ ! -d "$folder" ] || folders+=("$folder")
  done
  echo "Fuzzing $name for $seconds seconds"
  "$entry" "${folders[@]}" -max_total_time="$seconds" -timeout=2 \
    -malloc_limit_mb=128 -rss_limit_mb=512 \
    -artifact_prefix="build/fuzz/findings/$name-" -verbosity=0 -print_final_stats=0
}
export -f run_entry
export seconds
find build/fuzz/bin -name 'fuzz_*' -type f -executable -print0 |
  xargs -0 -n 1 -P "$(nproc)" bash -c 'run_entry "$1"' run_entry
