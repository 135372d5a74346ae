# A virtual X server (Xvfb) of one's own for the demo editor, and waiting by
# polling; sourced by the real-window test and by scripts/screenshots.sh.
# The sourcing script sets `work` (a scratch folder it removes) and kills
# $xvfb_pid at its end. SX_XVFB names the X server to start (default Xvfb).

xvfb=${SX_XVFB:-Xvfb}
xvfb_pid=
# One wait (a window, a file, a title) may take this long on a loaded machine;
# every wait polls, so a quick machine is not held up.
wait_seconds=60
poll_interval=0.2

fail() {
  echo "FAIL: $*" >&2
  exit 1
}

alive() { kill -0 "$1" 2>/dev/null; }

# wait_until SECONDS COMMAND...: runs the command until it succeeds; answers
# whether it did within that time. Each try is short, so a signal is handled
# at once.
wait_until() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    [ "$SECONDS" -lt "$end" ] || return 1
    sleep "$poll_interval"
  done
}

# poll WHAT COMMAND...: waits for the command to succeed, or fails.
poll() {
  local what=$1
  shift
  wait_until "$wait_seconds" "$@" || fail "waited ${wait_seconds}s for $what"
}

# Starts the X server with a 24-bit screen on a free display, exports DISPLAY
# and sends Qt programs to it; fails when there is no server to start.
start_x_server() {
  command -v "$xvfb" >/dev/null ||
    fail "cannot start a virtual X server: '$xvfb' is not there (scripts/setup.sh installs xvfb)"
  command -v xdotool >/dev/null || fail "xdotool is not there (scripts/setup.sh installs it)"
  # -displayfd: the server picks a free display and writes its number to fd 3.
  # -noreset: without it the server resets whenever its last client leaves,
  # and a program that connects during the reset finds no display.
  "$xvfb" -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$work/display" >"$work/xvfb.log" 2>&1 &
  xvfb_pid=$!
  poll "the X server to start" x_server_ready
  export DISPLAY=":$(head -n 1 "$work/display")"
  export QT_QPA_PLATFORM=xcb  # the other tests run offscreen
  mkdir -p "$work/runtime"
  chmod 700 "$work/runtime"
  export XDG_RUNTIME_DIR="$work/runtime"
  unset WAYLAND_DISPLAY
}

# Ready once it has named its display and answers a client there.
x_server_ready() {
  alive "$xvfb_pid" || fail "the virtual X server '$xvfb' did not start: $(tail -n 3 "$work/xvfb.log")"
  [ -s "$work/display" ] && DISPLAY=":$(head -n 1 "$work/display")" xdotool getdisplaygeometry >/dev/null 2>&1
}

# find_window NAME-PATTERN: the id of a visible window whose title matches.
find_window() { xdotool search --onlyvisible --limit 1 --name "$1" 2>/dev/null; }

# window_of PID NAME-PATTERN: sets `window` to the program's window of that
# title once it shows; fails when the program has ended.
window_of() {
  alive "$xvfb_pid" || fail "the X server ended (killed by another program?)"
  alive "$1" || fail "the program waited for (process $1) ended early"
  window=$(find_window "$2") && [ -n "$window" ]
}

# stop PID: ends a program this script started and reaps it.
stop() {
  if [ -n "$1" ] && kill "$1" 2>/dev/null; then
    wait "$1" 2>/dev/null || true  # the status of a killed program
  fi
}
