#!/usr/bin/env bash
# Takes the README's screenshots from the demo editor in a real X window: runs
# sxedit under a virtual X server (Xvfb) on bundled samples, works it through
# the X server with xdotool, and saves what the X server shows of the whole
# window, menu bar and status bar included, as docs/*.png.
#
#   scripts/screenshots.sh            the README's screenshots, in docs/
#   scripts/screenshots.sh --python   each bundled sample through the Python
#                                     module, with no X server, in out/screenshots/python/
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build=${BUILD_DIR:-build}

# The Python variant: examples/python/screenshot.py paints an SxCodeEditor
# into an image with QWidget.grab() on Qt's offscreen platform.
python_screenshots() {
  cmake -S . -B "$build" -DSX_BUILD_PYTHON=ON >/dev/null
  cmake --build "$build" --target sxcodeedit_python -j"$(nproc)"
  local python sample
  python=$(sed -n 's/^Python3_EXECUTABLE:[A-Z]*=//p' "$build/CMakeCache.txt")
  mkdir -p out/screenshots/python
  for sample in examples/sample.*; do
    PYTHONPATH="$build/python" QT_QPA_PLATFORM=offscreen \
      "$python" examples/python/screenshot.py "$sample" "out/screenshots/python/$(basename "$sample").png"
  done
}
if [ "${1:-}" = --python ]; then
  python_screenshots
  exit 0
fi

cmake -S . -B "$build" >/dev/null
cmake --build "$build" --target sxedit sxgrab -j"$(nproc)"
sxedit=$build/apps/sxedit/sxedit
sxgrab=$build/apps/sxgrab/sxgrab

work=$(mktemp -d "${TMPDIR:-/tmp}/sxedit-screenshots.XXXXXX")
editor_pid=
source scripts/xsession.sh

cleanup() {
  local status=$?
  trap - EXIT TERM INT
  set +e
  stop "$editor_pid"
  stop "$xvfb_pid"
  [ "$status" -eq 0 ] || tail -n 20 "$work"/*.log >&2
  rm -rf "$work"
  exit "$status"
}
trap cleanup EXIT
trap 'fail "stopped by a signal"' TERM INT

# Where the control puts its text with the default font ("Courier New" 10 pt,
# Liberation Mono here): the first character cell of the main window and of
# the database window, and the size of a cell, in pixels.
readonly cell_width=8 line_height=15
# The demo shows fold buttons and line numbers: the gutter is 42 pixels wide.
readonly main_text_x=44 main_text_y=19 db_text_x=226 db_text_y=19
readonly db_list_row_height=14

# open_editor TITLE-PATTERN ARGUMENTS...: starts sxedit and waits for its window.
open_editor() {
  local title=$1
  shift
  "$sxedit" "$@" >"$work/sxedit.log" 2>&1 &
  editor_pid=$!
  poll "the editor's window" window_of "$editor_pid" "$title"
  xdotool windowfocus "$window"
}

close_editor() {
  stop "$editor_pid"
  editor_pid=
}

# cell_point X0 Y0 COLUMN LINE: the middle of a character cell.
cell_point() { echo "$(($1 + $3 * cell_width + cell_width / 2)) $(($2 + $4 * line_height + line_height / 2))"; }

# A caret that blinks may differ between two grabs; any two equal grabs in a
# row mean that the window has painted what it was given.
settled() {
  "$sxgrab" --window "$window" "$work/a.png" >/dev/null && "$sxgrab" --window "$window" "$work/b.png" >/dev/null &&
    cmp -s "$work/a.png" "$work/b.png"
}

# shoot NAME: saves the settled window as docs/NAME.
shoot() {
  xdotool mousemove --window "$window" 0 0  # no hover highlight
  poll "the window to settle" settled
  cp "$work/b.png" "docs/$1"
  echo "docs/$1: $(stat -c %s "docs/$1") bytes"
}

pascal_with_selection() {
  open_editor '^sample\.pas - sxedit$' examples/sample.pas
  # A drag from the class name down into the field list.
  xdotool mousemove --window "$window" $(cell_point $main_text_x $main_text_y 2 12) mousedown 1 \
    mousemove --window "$window" $(cell_point $main_text_x $main_text_y 9 15) mouseup 1
  shoot screenshot.png
  close_editor
}

# The sample in the Dark theme with the caret behind the bracket of
# "class(TObject)", so that the pair shows on its ground.
pascal_in_dark() {
  open_editor '^sample\.pas - sxedit$' --theme Dark examples/sample.pas
  xdotool mousemove --window "$window" $(cell_point $main_text_x $main_text_y 17 12) click 1
  shoot screenshot-dark.png
  close_editor
}

# The sample with four regions folded by their gutter buttons, from the
# bottom up so that the rows above stay where they are: the constructor's
# body, the comment above it, the class and the first comment.
pascal_folded() {
  open_editor '^sample\.pas - sxedit$' examples/sample.pas
  local line
  for line in 27 24 12 2; do
    xdotool mousemove --window "$window" 12 $((main_text_y + line * line_height + line_height / 2)) click 1
  done
  shoot screenshot-folding.png
  close_editor
}

plain_sample() {
  open_editor "^sample\\.$1 - sxedit\$" "examples/sample.$1"
  shoot "screenshot-$1.png"
  close_editor
}

# The second record of the sample database with a line typed into it, which
# puts the record into edit state; the database is a scratch copy.
database_mode() {
  open_editor '^scripts\.db - sxedit database$' --db "$work/scripts.db"
  xdotool mousemove --window "$window" 60 $((db_text_y + db_list_row_height + db_list_row_height / 2)) click 1
  xdotool mousemove --window "$window" $(cell_point $db_text_x $db_text_y 0 0) click 1
  xdotool type --delay 20 -- "-- typed in the database mode"
  xdotool key Return
  shoot screenshot-database.png
  close_editor
}

start_x_server
mkdir -p "$work/home"
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share"
pascal_with_selection
pascal_in_dark
pascal_folded
plain_sample vbs
plain_sample js
database_mode
