#!/usr/bin/env bash
# Runs inside xvfb-run: starts marlune-desk, opens the terminal from the Tools menu, types ???
# and Enter, selects the whole log and copies it, prints what the clipboard then holds, and
# ends the terminal and the program as an operator does. Usage: smoke_terminal.sh DESK READER
set -u
desk=$1
reader=$2
export QT_QPA_PLATFORM=xcb

"$desk" &
pid=$!
trap 'kill "$pid" 2>/dev/null' EXIT

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

xdotool key Tab
xdotool type --delay 20 'exit'
xdotool key Return
sleep 0.3
xdotool windowfocus --sync "$frame"
xdotool key --delay 100 alt+f x
for _ in $(seq 1 50); do
  if ! kill -0 "$pid" 2>/dev/null; then
    wait "$pid"
    echo "desk ended with $?"
    exit 0
  fi
  sleep 0.1
done
echo "desk is still running"
