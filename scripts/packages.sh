# Debian 12 packages, to be sourced.

# What building and running the program takes.
run_packages=(
  g++ cmake ninja-build ccache mold
  qt6-base-dev qt6-svg-dev qt6-multimedia-dev libfontconfig-dev libjpeg62-turbo-dev libtiff-dev libcli11-dev
  qt6-translations-l10n
  fonts-dejavu-core fonts-liberation
)
# What the tests take on top of that.
test_packages=(
  pulseaudio pulseaudio-utils
  cups printer-driver-cups-pdf
  libgtest-dev libgmock-dev libbenchmark-dev clang-format
)
# What the fuzz entries take on top of that.
fuzz_packages=(clang libclang-rt-14-dev)
