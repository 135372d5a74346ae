#!/usr/bin/env bash
# The demo editor in a real X window: starts a virtual X server (Xvfb), runs
# sxedit on the xcb platform on an empty Pascal file, types a few lines through
# the X server with xdotool (Enter with its auto-indent, Shift+Home with typed
# replacements, Ctrl+Z), saves with Ctrl+S and checks the file's exact text; then
# checks a screenshot read back from the X server, opens Help > About, quits
# with Ctrl+Q and checks that the editor wrote no settings.
#
# usage: realwindow_test.sh SXEDIT SXGRAB SHOTCHECK
# SX_XVFB names the X server to start (default Xvfb). Without one the test
# fails: it never skips. SX_REALWINDOW_KEEP=1 keeps the screenshots and logs
# of a run that passed, too. CTest runs it under `timeout`, whose TERM cleans up.
set -euo pipefail

sxedit=$1 sxgrab=$2 shotcheck=$3
work=$(mktemp -d "${TMPDIR:-/tmp}/sxedit-realwindow.XXXXXX")
editor_pid=
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/xsession.sh"

cleanup() {
  local status=$?
  trap - EXIT TERM INT
  set +e  # a killed process's status must not end the clean-up
  stop "$editor_pid"
  stop "$xvfb_pid"
  if [ "$status" -eq 0 ] && [ -z "${SX_REALWINDOW_KEEP:-}" ]; then
    rm -rf "$work"
  elif [ "$status" -eq 0 ]; then
    echo "The files of this run are in $work"
  else
    for log in "$work"/*.log; do
      [ -s "$log" ] && { echo "--- $(basename "$log")"; tail -n 20 "$log"; }
    done >&2
    echo "The files of this run (screenshots, logs, the saved text) are in $work" >&2
  fi
  exit "$status"
}
trap cleanup EXIT
trap 'fail "stopped by a signal (the time limit?)"' TERM INT

# --- the editor's window ----------------------------------------------------

# A home of its own, so that any setting the editor wrote would show.
prepare_home() {
  mkdir -p "$work/home" "$work/config" "$work/cache"
  export HOME="$work/home" XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache"
}

start_editor() {
  : >"$work/typed.pas"
  "$sxedit" --theme Classic "$work/typed.pas" >"$work/sxedit.log" 2>&1 &
  editor_pid=$!
  poll "the editor's window" window_of "$editor_pid" '^typed\.pas - sxedit$'
  editor_window=$window
  eval "$(xdotool getwindowgeometry --shell "$editor_window")"
  window_size="${WIDTH}x${HEIGHT}"
  # The demo gives its control the focus on start; the X focus goes to its window.
  xdotool windowfocus "$editor_window"
  poll "the keyboard focus" has_focus
}

has_focus() { [ "$(xdotool getwindowfocus 2>/dev/null)" = "$editor_window" ]; }

# --- typing -----------------------------------------------------------------

type_text() { xdotool type --delay 20 -- "$1"; }
press() { xdotool key --delay 20 "$@"; }

# Shift+Home, with Shift held down until the selection shows: the control asks
# the X server for the Shift key when it handles Home, and xdotool's own
# Shift+Home may have let go of Shift by then on a busy machine.
select_to_line_start() {
  xdotool keydown shift
  press Home
  poll "the selection to show" selection_shows
  xdotool keyup shift
}

grab() { "$sxgrab" --window "$editor_window" "$1"; }
selection_shows() { grab "$work/poll.png" >/dev/null && "$shotcheck" selection "$work/poll.png"; }

file_is() { [ "$(cat "$work/typed.pas")" = "$1" ]; }

# expect_file TEXT: waits for the saved file to hold TEXT and a line end.
expect_file() {
  local want=$1
  if ! wait_until 20 file_is "$want"; then
    diff <(printf '%s\n' "$want") "$work/typed.pas" >&2 || true
    fail "the saved file differs from what was typed (above: expected, then saved)"
  fi
  [ "$(tail -c 1 "$work/typed.pas" | od -An -c | tr -d ' ')" = '\n' ] || fail "the saved file lacks its last line end"
}

type_program() {
  type_text "program Demo;"; press Return
  type_text "var"; press Return
  type_text "  S: string;"; press Return
  # Enter copied the indent of the line above; the selection replaces it.
  select_to_line_start; type_text "begin"; press Return
  type_text "  Writeln('Hello');"
  select_to_line_start; type_text "  S := 'typed';"; press Return
  type_text "Count := 42;"; press Return
  select_to_line_start; type_text "end.;"
}

readonly with_semicolon="program Demo;
var
  S: string;
begin
  S := 'typed';
  Count := 42;
end.;"

# Undo is posted to the control and runs after the key that asked for it, so
# each save waits for the file before the next key goes out.
save_undo_save() {
  press ctrl+s
  expect_file "$with_semicolon"
  press ctrl+z
  # The save cleared the modified mark; the undone ';' sets it again.
  poll "the undo to mark the text modified" window_of "$editor_pid" '^\*typed\.pas - sxedit$'
  press ctrl+s
  expect_file "${with_semicolon%;}"
  echo "typed, undone and saved: $(wc -l <"$work/typed.pas") lines as expected"
}

# --- what the window shows ----------------------------------------------------

check_screenshot() {
  local size
  size=$(grab "$work/window.png") || fail "could not take a screenshot of the window"
  [ "$size" = "$window_size" ] || fail "the screenshot is $size, the window $window_size"
  "$shotcheck" text "$work/window.png" "$work/typed.pas" ||
    fail "the screenshot does not show the typed text in the Pascal parser's colours"
}

about_gone() { ! find_window '^About sxedit$' >/dev/null; }

check_about_box() {
  press alt+h
  press a
  poll "the About box" window_of "$editor_pid" '^About sxedit$'
  "$sxgrab" --window "$window" "$work/about.png" >/dev/null || fail "could not take a screenshot of the About box"
  press Return
  poll "the About box to close" about_gone
  echo "Help > About opened and closed"
}

editor_ended() { ! alive "$editor_pid"; }

quit_editor() {
  xdotool windowfocus "$editor_window"
  poll "the keyboard focus back in the editor" has_focus
  press ctrl+q
  poll "the editor to quit" editor_ended
  local status=0
  wait "$editor_pid" || status=$?
  editor_pid=
  [ "$status" -eq 0 ] || fail "sxedit ended with status $status"
  local written
  written=$(find "$work/home" "$work/config" -type f)
  [ -z "$written" ] || fail "the editor wrote settings: $written"
}

start_x_server
prepare_home
start_editor
echo "sxedit's window $editor_window ($window_size) on display $DISPLAY"
type_program
save_undo_save
check_screenshot
check_about_box
quit_editor
echo "real window: passed"
