#!/usr/bin/env bash
# marlune-desk for real, on an X server of its own: the operator's way to the terminal. Starts
# the desk, opens the terminal from the Tools menu, types ??? and Enter, selects the whole log
# and copies it, reads the clipboard, then ends the terminal and the program as an operator does,
# and the frame writes its place. Usage: smoke_terminal.sh DESK READER; 77 means skipped.
set -u
for tool in xvfb-run xdotool Xvfb; do
  command -v "$tool" >/dev/null || { echo "$tool is not installed (Debian packages xvfb and xdotool)"; exit 77; }
done
[ -n "${MARLUNE_SMOKE_ON_XVFB:-}" ] || MARLUNE_SMOKE_ON_XVFB=1 exec xvfb-run -a -s "-screen 0 1280x800x24" bash "$0" "$@"
desk=$(realpath "$1")
reader=$(realpath "$2")
export QT_QPA_PLATFORM=xcb
# A working folder without marlunecom.ini: the built-in simulated controller.
work=$(mktemp -d)
export XDG_CONFIG_HOME=$work/config
cd "$work" || exit 1

"$desk" &
pid=$!
trap 'kill "$pid" 2>/dev/null; rm -rf "$work"' EXIT

frame=$(timeout 10 xdotool search --sync --onlyvisible --name '^MarluneDesk$' | head -1)
[ -n "$frame" ] || { echo "the frame did not appear"; exit 2; }
xdotool windowfocus --sync "$frame"
xdotool key --delay 100 alt+t Down Return

terminal=$(timeout 10 xdotool search --sync --onlyvisible --name '^Marlune Terminal$' | head -1)
[ -n "$terminal" ] || { echo "the terminal did not appear"; exit 3; }
xdotool windowfocus --sync "$terminal"
# The terminal gives its command line the focus on its first 100 ms tick.
sleep 0.5
xdotool type --delay 20 '???'
xdotool key Return

# Shift+Tab goes from the command line to the log; Tab comes back.
log=""
for _ in $(seq 1 30); do
  xdotool key --delay 30 shift+Tab ctrl+a ctrl+c
  log=$("$reader")
  grep -q 'REPLY:@' <<<"$log" && break
  xdotool key Tab
  sleep 0.1
done
printf '%s\n' "$log"
grep -q 'SEND :???' <<<"$log" && grep -q 'REPLY:@' <<<"$log" || { echo "no query and reply were copied"; exit 4; }

xdotool key Tab
xdotool type --delay 20 'exit'
xdotool key Return
sleep 0.3
xdotool windowfocus --sync "$frame"
xdotool key --delay 100 alt+f x
for _ in $(seq 1 50); do
  if ! kill -0 "$pid" 2>/dev/null; then
    wait "$pid" || { echo "desk ended with $?"; exit 5; }
    [ -f "$XDG_CONFIG_HOME/Marlune/Marlune Desk.conf" ] || { echo "the frame wrote no place"; exit 6; }
    exit 0
  fi
  sleep 0.1
done
echo "desk is still running"
exit 7
