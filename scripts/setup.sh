#!/usr/bin/env bash
# Installs the Debian packages this project needs, when any is missing.
# Idempotent and quiet when everything is there; needs root (or sudo) to install.
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  qt6-base-dev qt6-base-dev-tools libgl-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libsqlite3-dev
  libpcre2-dev  # regular-expression search: PCRE2's 16-bit library
  fonts-liberation fontconfig
  # the fuzz targets: clang and its runtime, which holds libFuzzer
  clang libclang-rt-14-dev
  libqscintilla2-qt6-dev  # the peer benchmark, bench/peers
  # the real-window test and scripts/screenshots.sh: a virtual X server and key typing through it
  xvfb xdotool
  # SxCodeEditor's model binding test: Qt's SQLite driver
  libqt6sql6-sqlite
  # the Qt Designer plugin and the API reference
  qt6-tools-dev qt6-tools-dev-tools doxygen
  # the Python bindings: sip, PyQt-builder, PyQt6 and pytest; PyQt-builder asks Qt's qmake for its version
  python3-dev python3-sipbuild python3-pyqtbuild sip-tools pyqt6-dev python3-pyqt6 python3-pytest qmake6
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
