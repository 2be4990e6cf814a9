#!/usr/bin/env bash
# Installs what is missing, builds and runs every test:  ./test.sh [--sanitize]
# With --sanitize: under AddressSanitizer and UndefinedBehaviorSanitizer, then FUZZ_SECONDS (10) of
# every fuzz entry. Without it, the build folder is the one that run.sh uses.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
source scripts/packages.sh
preset=release
packages=("${run_packages[@]}" "${test_packages[@]}")
case "${1:-}" in
  "") ;;
  --sanitize)
    preset=sanitize
    packages+=("${fuzz_packages[@]}")
    ;;
  *)
    echo "usage: ./test.sh [--sanitize]" >&2
    exit 2
    ;;
esac
scripts/install_packages.sh "${packages[@]}"

export LSAN_OPTIONS="suppressions=$PWD/tests/leaks_of_libraries.txt:print_suppressions=0"
export UBSAN_OPTIONS=print_stacktrace=1
# run.sh may have set the folder up without the tests.
cmake --preset "$preset" -DTESSA_BUILD_TESTS=ON
cmake --build --preset "$preset"
ctest --preset "$preset" --parallel "$(nproc)"

if [ "$preset" = sanitize ]; then
  scripts/fuzz.sh "${FUZZ_SECONDS:-10}"
fi
