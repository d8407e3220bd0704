#!/usr/bin/env bash
# Plays the client in a real window of a virtual display, with key and mouse
# events that come from the display and not from the program: connects to the
# demo world, types, adds an alias in its editor and runs it.
#
#   play.sh CLIENT DEMO-WORLD [PICTURES]      77: skipped, a tool is missing
set -uo pipefail

client=$1 world=$2 pictures=${3:-}
. "$(dirname "$0")/display.sh"
need Xvfb xdotool

cd "$scratch" || exit 1
mkdir home play
export HOME=$scratch/home XDG_CONFIG_HOME=$scratch/home/config QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY

start_display
start_world "$world"
printf '\ntrigger "You say: {*}"\n/set said, {_trigOut0}\n/trigger\n' > play/triggers.txt
cd play || exit 1
"$client" > ../client.log 2>&1 &
client_pid=$!
pids+=("$client_pid")

window_of() { xdotool search --onlyvisible --name "$1" 2> /dev/null | tail -n 1; }
there() { [ -n "$(window_of "$1")" ]; }
# Without a window manager nobody hands the focus on.
focus() {
  until_true 10 there "$1" || fail "no window \"$1\""
  xdotool windowfocus --sync "$(window_of "$1")"
}
# click WINDOW X Y: a click of the mouse at a place of a window.
click() { xdotool mousemove --window "$1" "$2" "$3" click 1; }

main="Kelmora - The Official Client"
focus "$main"
xdotool key ctrl+j
sleep 1
xdotool type --delay 5 Robin
xdotool key Return
sleep 0.5
xdotool type --delay 5 'say hello'
xdotool key Return
sleep 0.5
picture play

# The alias editor: Ctrl+L opens it with the list in focus; Tab goes to "Add
# alias", Space presses it, and the file is written at once.
xdotool key ctrl+l
focus "Aliases"
picture aliases
for _ in 1 2 3 4 5 6 7 8; do
  holds aliases.txt '<Enter your alias here>' && break
  xdotool key Tab
  xdotool key space
  sleep 0.2
done
until_true 5 holds aliases.txt '<Enter your alias here>' || fail "no alias was added by the keys"
xdotool key Escape
until_true 5 eval '! there Aliases' || fail "Escape did not close the editor"

# The mouse: the help button, the last of the toolbar.
focus "$main"
click "$(window_of "$main")" 640 45
until_true 10 there "Kelmora Help" || fail "a click on the help button opened nothing"
picture help
# Escape closes it, and the next keys are the input bar's without a click.
focus "Kelmora Help"
xdotool mousemove 1190 990  # off the window, which would get the keys for it
xdotool key Escape
until_true 5 eval '! there "Kelmora Help"' || fail "Escape did not close the help"
xdotool type --delay 5 'wave'
xdotool key Return
sleep 0.3

# Two keys ask for the menu in the pane, to which Tab leads; a letter chooses in it.
for key in Menu shift+F10; do
  focus "$main"
  xdotool key Tab
  xdotool key "$key"
  sleep 0.3
  xdotool key t
  until_true 5 there "Triggers" || fail "$key opened no menu"
  focus "Triggers"
  xdotool key Escape
  until_true 5 eval '! there Triggers' || fail "Escape did not close the triggers"
done
focus "$main"
xdotool key Escape  # the last line stands in the bar and is no longer selected

# What the trigger caught of the words, on their way from the keys to the world
# and back, goes into the saved session.
focus "$main"
xdotool type --delay 5 '/echo caught {said}'
xdotool key Return
xdotool key ctrl+s
focus "Save Game Session To File"
xdotool type --delay 5 "$scratch/session.html"
xdotool key Return
until_true 10 holds "$scratch/session.html" 'caught hello' ||
  fail "the saved session lacks the caught word: $(cat ../client.log)"
holds "$scratch/session.html" 'wave' ||
  fail "behind the help the keys went astray"
holds "$scratch/session.html" 'You say: hello' || fail "the saved session lacks the answer"
kill -0 "$client_pid" || fail "the client is gone"
echo "PASSED: connected, spoke, added an alias, opened the help, asked for menus, saved"
