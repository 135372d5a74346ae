#!/usr/bin/env bash
# Installs the built libraries into a temporary prefix and builds the
# embedding example against that prefix alone, once through the CMake
# package and once through pkg-config, then runs it. A broken export, a
# missing header or a wrong pkg-config file fails here.
#
#   scripts/install_check.sh [build dir]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
prefix=$(mktemp -d /tmp/sxcodeedit-install.XXXXXX)
trap 'rm -rf "$prefix"' EXIT

# Staged through DESTDIR, so that what goes outside the prefix (the Designer
# plugin, into Qt's plugin folder) lands in the temporary folder too.
DESTDIR="$prefix" cmake --install "$build" --prefix /usr >/dev/null
echo "installed into $prefix/usr"
if grep -q '^SX_BUILD_DESIGNER:BOOL=ON' "$build/CMakeCache.txt"; then
  test -n "$(find "$prefix" -name libsxcodeeditorplugin.so)" || { echo "the Designer plugin is not installed"; exit 1; }
  echo "Designer plugin: installed"
fi

# Every installed header compiles on its own, found where the package says.
libdir=$(dirname "$(find "$prefix/usr" -name sxcodeedit.pc)")
cflags=$(PKG_CONFIG_PATH="$libdir" pkg-config --cflags sxcodeedit)
include=$(PKG_CONFIG_PATH="$libdir" pkg-config --variable=includedir sxcodeedit)
headers=$(cd "$include" && find . -name '*.h' | sed 's|^\./||' | sort)
[ -n "$headers" ]
export cflags
# shellcheck disable=SC2016
xargs -P "$(nproc)" -I{} sh -c 'printf "#include \"%s\"\n" "$1" | g++ -fsyntax-only -x c++ - $cflags ||
  { echo "header does not compile alone: $1"; exit 255; }' _ {} <<<"$headers"
echo "headers: $(wc -l <<<"$headers") compile alone"

# Through the CMake package.
cmake -S examples/embed -B "$prefix/embed-cmake" -DCMAKE_PREFIX_PATH="$prefix/usr" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
cmake --build "$prefix/embed-cmake" -j"$(nproc)" >/dev/null

# Through pkg-config.
flags=$(PKG_CONFIG_PATH="$libdir" pkg-config --cflags --libs sxcodeedit)
# shellcheck disable=SC2086
g++ -fPIC examples/embed/main.cpp -o "$prefix/embed-pkgconfig" $flags -Wl,-rpath,"$(dirname "$libdir")"

# The plain editor needs no SQLite; the data-aware one is the package's
# component dbcodeedit.
if grep -q sqlite <<<"$(ldd "$(dirname "$libdir")/libsxcodeedit.so")"; then
  echo "libsxcodeedit needs SQLite"; exit 1
fi
mkdir -p "$prefix/component"
cat >"$prefix/component/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(SxComponentCheck LANGUAGES CXX)
find_package(SxCodeEdit 1.0 REQUIRED COMPONENTS dbcodeedit)
if(NOT TARGET SxCodeEdit::sxdbcodeedit OR NOT TARGET SxCodeEdit::sxdb)
  message(FATAL_ERROR "the component dbcodeedit brings no targets")
endif()
CMAKE
cmake -S "$prefix/component" -B "$prefix/component/build" -DCMAKE_PREFIX_PATH="$prefix/usr" >/dev/null
PKG_CONFIG_PATH="$libdir" pkg-config --exists sxdbcodeedit
echo "components: dbcodeedit found"

export QT_QPA_PLATFORM=offscreen
for program in "$prefix/embed-cmake/embed_example" "$prefix/embed-pkgconfig"; do
  output=$("$program" --render "$prefix/embed.png")
  echo "$output"
  grep -q "3 lines, rendered" <<<"$output"
  test -s "$prefix/embed.png"
done
# The Python module, when built, imports from the prefix alone and loads the
# prefix's libraries, not the build tree's.
module=$(find "$prefix/usr" -name 'sxcodeedit*.so')
if [ -n "$module" ]; then
  # Read whole before grep: grep -q stops at the first hit, and the writer's
  # broken pipe would fail the pipeline now and then.
  deps=$(ldd "$module")
  if ! grep -q "libsxcodeeditor.so.* => $prefix/usr/" <<<"$deps"; then
    echo "the Python module does not find the installed libsxcodeeditor"; exit 1
  fi
  python=$(sed -n 's/^Python3_EXECUTABLE:[A-Z]*=//p' "$build/CMakeCache.txt")
  PYTHONPATH=$(dirname "$module") "$python" -c "
from PyQt6.QtWidgets import QApplication
import sxcodeedit
app = QApplication([])
assert sxcodeedit.__file__.startswith('$prefix/'), sxcodeedit.__file__
assert sxcodeedit.SxCodeEditor().setLanguage('pascal')"
  echo "python: ${module#"$prefix"/usr/} imports"
fi
echo "install check: passed"
