#!/usr/bin/env bash
# Installs what is missing, builds the viewer and opens it:  ./run.sh [IMAGE]
# Without IMAGE it opens a sample scene. Without a display it draws the picture into a file instead.
set -euo pipefail

usage() {
  echo "usage: ./run.sh [IMAGE]" >&2
  exit "$1"
}
[ $# -le 1 ] || usage 2
case "${1:-}" in
  -h | --help) usage 0 ;;
  -*) [ -e "$1" ] || usage 2 ;;
esac

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$here/build/release
source "$here/scripts/packages.sh"
"$here/scripts/install_packages.sh" "${run_packages[@]}"

# The image's path is relative to where the user stands, so nothing here changes the folder.
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if [ ! -x "$build/bin/tessaview" ] || [ ! -e "$build/samples/stamp" ]; then
  echo "Building (takes a few minutes the first time) ..." >&2
fi
if [ ! -f "$build/build.ninja" ]; then
  # The tests' packages may be missing; test.sh adds the tests to the same folder.
  (cd "$here" && cmake --preset release -DTESSA_BUILD_TESTS=OFF) >"$log" 2>&1 ||
    { cat "$log" >&2; exit 1; }
fi
# Does nothing when nothing changed.
ninja -C "$build" tessaview tessatool samples palette_data >"$log" 2>&1 || { cat "$log" >&2; exit 1; }

# True when there is something to open a window on.
has_display() {
  [ -z "${WAYLAND_DISPLAY:-}" ] || return 0
  case "${DISPLAY:-}" in
    "") return 1 ;;
    :*)
      local number=${DISPLAY#:}
      [ -S "/tmp/.X11-unix/X${number%%.*}" ]
      ;;
    *) return 0 ;;
  esac
}

image=${1:-$build/samples/house.sit}
if has_display; then
  rm -f "$log"
  exec "$build/bin/tessaview" "$image"
fi
picture=$build/$(basename -- "${image%.*}").png
"$build/bin/tessatool" export "$image" -o "$picture" --palette "HOT IRON" --force
echo "There is no display here: the picture was drawn into $picture instead."
