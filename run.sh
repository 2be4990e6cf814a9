#!/usr/bin/env bash
# Installs what is missing, builds the viewer and opens it:  ./run.sh [IMAGE]
# Without IMAGE it opens a sample scene. Without a display it draws the picture into a file instead.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$here/build/release
source "$here/scripts/packages.sh"
"$here/scripts/install_packages.sh" "${run_packages[@]}"

# The image's path is relative to where the user stands, so nothing here changes the folder.
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if [ ! -f "$build/build.ninja" ]; then
  echo "Configuring (first start only) ..." >&2
  (cd "$here" && cmake --preset release -DTESSA_BUILD_BENCH=OFF) >"$log" 2>&1 ||
    { cat "$log" >&2; exit 1; }
fi
if ! ninja -C "$build" -n 2>/dev/null | grep -q 'no work to do'; then
  echo "Building (takes a few minutes the first time) ..." >&2
  ninja -C "$build" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
fi

image=${1:-$build/samples/house.sit}
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  rm -f "$log"
  exec "$build/bin/tessaview" "$image"
fi
picture=$build/$(basename "${image%.*}").png
"$build/bin/tessatool" export "$image" -o "$picture" --palette "HOT IRON" --force
echo "There is no display here: the picture was drawn into $picture instead."
