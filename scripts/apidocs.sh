#!/usr/bin/env bash
# Builds the HTML API reference of the Qt face, the control and the parser
# base with Doxygen (docs/Doxyfile), checks that every member of the face is
# documented (docs/Doxyfile.face), and prints where the reference is. Any
# Doxygen warning fails it.
#
#   scripts/apidocs.sh [folder]    # default: build/docs/api
set -euo pipefail
cd "$(dirname "$0")/.."
out=${1:-build/docs/api}
mkdir -p "$out"
SX_APIDOCS_DIR=$(cd "$out" && pwd)
SX_VERSION=$(sed -n 's/^project(SxCodeEdit VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
export SX_APIDOCS_DIR SX_VERSION
doxygen docs/Doxyfile
SX_APIDOCS_CHECK_DIR=$(mktemp -d /tmp/sxcodeedit-apidocs.XXXXXX)
export SX_APIDOCS_CHECK_DIR
trap 'rm -rf "$SX_APIDOCS_CHECK_DIR"' EXIT
doxygen docs/Doxyfile.face
echo "API reference: $SX_APIDOCS_DIR/index.html"
