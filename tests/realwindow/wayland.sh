#!/usr/bin/env bash
# Plays the client on Wayland: a compositor in a virtual display, whose keys reach the
# client as those of a keyboard would. Each dialog is shown and closed, then a line is
# typed, and the demo world's answer is in the saved session. What is saved leaves the
# window's place as it was stored, and the next start on X11 shows the window there.
#
#   wayland.sh CLIENT DEMO-WORLD [PICTURES]     77: skipped, a tool is missing
#
# The compositor is not run headless: then it has no keyboard, and the toolkit takes a
# key for a fault.
set -uo pipefail

client=$1 world=$2 pictures=${3:-}
. "$(dirname "$0")/display.sh"
need Xvfb xdotool weston
ls /usr/lib/*/qt6/plugins/platforms/libqwayland* > /dev/null 2>&1 ||
  { echo "SKIPPED: Qt has no plugin for Wayland here"; exit 77; }

cd "$scratch" || exit 1
mkdir -m 700 home play runtime
export HOME=$scratch/home XDG_CONFIG_HOME=$scratch/home/config XDG_RUNTIME_DIR=$scratch/runtime

start_display
weston --backend=x11-backend.so --socket=play --width=1100 --height=950 --idle-time=0 \
  > weston.log 2>&1 &
pids+=($!)
until_true 15 test -S runtime/play || fail "no compositor: $(cat weston.log)"
# It has no name that the search knows; the first window is the display's own.
until_true 10 eval "xdotool search --name '.*' > found; [ \$(wc -l < found) -gt 1 ]" || fail "the compositor shows no window: $(cat weston.log)"
xdotool windowfocus --sync "$(tail -n 1 found)"

start_world "$world"

cd play || exit 1
# The log names each window that is shown or goes.
WAYLAND_DISPLAY=play WAYLAND_DEBUG=1 QT_QPA_PLATFORM=wayland LC_ALL=C.UTF-8 "$client" > ../client.log 2>&1 &
client_pid=$!
pids+=("$client_pid")
main="Kelmora - The Official Client"
until_true 20 holds ../client.log "set_title(\"$main\")" || fail "no window: $(tail -5 ../client.log)"
sleep 1

# The compositor hands the keyboard back when the dialog has faded away. The log writes
# an object as "name@7", from version 1.23 of the library on as "name#7".
handed_on() { [ "$(grep -c 'wl_keyboard[@#][0-9]*\.enter' ../client.log)" -ge "$1" ]; }
for dialog in "g:General Settings" "p:Proxy Settings" "m:Macros" "l:Aliases" "t:Triggers" \
  "h:Kelmora Help"; do
  before=$(grep -c 'wl_keyboard[@#][0-9]*\.enter' ../client.log)
  xdotool key "ctrl+${dialog%%:*}"
  until_true 10 holds ../client.log "set_title(\"${dialog#*:}\")" || fail "no dialog \"${dialog#*:}\""
  until_true 10 handed_on $((before + 1)) || fail "no keys for \"${dialog#*:}\""
  picture "${dialog#*:}"
  xdotool key Escape
  until_true 10 handed_on $((before + 2)) || fail "Escape did not close \"${dialog#*:}\""
done

xdotool key ctrl+j
sleep 1
xdotool type --delay 20 Robin
xdotool key Return
sleep 0.5
xdotool type --delay 20 'say hello'
xdotool key Return
sleep 0.5
picture play
for room in north north south south; do
  xdotool type --delay 20 $room
  xdotool key Return
  sleep 0.2
done
# The bar to find words gets the keyboard, and the input bar has it again afterwards.
xdotool key ctrl+f
sleep 0.5
xdotool type --delay 20 hello
picture find
xdotool key Return
xdotool key Escape
sleep 0.5
# The wheel over the pane; what comes then divides it.
xdotool mousemove 400 300 click 4 click 4 click 4
xdotool type --delay 20 'say again'
xdotool key Return
sleep 0.5
picture divided
xdotool key ctrl+s
until_true 10 holds ../client.log 'set_title("Save Game Session To File")' || fail "nothing to save with"
sleep 1
xdotool type --delay 20 "$scratch/session.html"
xdotool key Return
until_true 10 holds "$scratch/session.html" 'You say: hello' ||
  fail "the saved session lacks the answer: $(cat "$scratch/session.html" 2> /dev/null | tail -c 300)"
holds "$scratch/session.html" 'You say: again' || fail "the keyboard did not come back from the bar to find words"
kill -0 "$client_pid" || fail "the client is gone"

store="$XDG_CONFIG_HOME/Dunmere Works/Kelmora Client v3.9b.conf"
holds "$store" splitString && fail "the settings were saved before anybody asked for it"
sleep 1  # until the file dialog has faded away
before=$(grep -c 'wl_keyboard[@#][0-9]*\.enter' ../client.log)
xdotool key ctrl+g
until_true 10 handed_on $((before + 1)) || fail "no keys for the general settings"
xdotool key Return
until_true 10 holds "$store" splitString || fail "Apply did not save the settings"
holds "$store" 'pos=@Point(20 20)' || fail "another place is stored: $(grep pos= "$store")"
kill "$client_pid"
wait "$client_pid" 2> /dev/null
QT_QPA_PLATFORM=xcb "$client" > ../x11.log 2>&1 &
pids+=($!)
there() { xdotool search --onlyvisible --name "$main" > ../x11-window 2> /dev/null; }
until_true 20 there || fail "no window on X11: $(cat ../x11.log)"
place=$(xdotool getwindowgeometry --shell "$(tail -n 1 ../x11-window)" | grep -E '^[XY]=' | paste -sd ' ')
[ "$place" = "X=20 Y=20" ] || fail "on X11 the window is at $place"
echo "PASSED: showed every dialog, connected, spoke, found, saved, and started on X11"
