#!/usr/bin/env bash
# Plays with the installed commands on a virtual display, as somebody who has just
# installed both packages: starts the demo world and the client, connects, says a
# line, saves the session, makes an alias and a trigger, which fires.
set -uo pipefail
scratch=$(mktemp -d)
mine=$HOME/.local/share/kelmora
pids=()
finish() {
  for pid in "${pids[@]}"; do kill "$pid" 2> /dev/null; done
  wait 2> /dev/null
  rm -rf "$scratch"
}
trap finish EXIT
fail() {
  echo "FAILED: $*"
  cat "$scratch"/*.log
  exit 1
}
# until_true SECONDS COMMAND...: waits for a command to succeed.
until_true() {
  local tries=$(($1 * 20))
  shift
  while ! "$@"; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || return 1
    sleep 0.05
  done
}
holds() { grep -qF -- "$2" "$1" 2> /dev/null; }
there() { xdotool search --onlyvisible --name "$1" > /dev/null 2>&1; }
focus() {
  until_true 20 there "$1" || fail "no window \"$1\""
  xdotool windowfocus --sync "$(xdotool search --onlyvisible --name "$1" 2> /dev/null | tail -n 1)"
}
line() {
  xdotool type --delay 5 "$1"
  xdotool key Return
  sleep 0.5
}
# saved FILE: the session as it is now.
saved() {
  xdotool key ctrl+s
  focus "Save Game Session To File"
  line "$scratch/$1"
  until_true 10 test -s "$1" || fail "$1 was not saved"
  focus "$main"
}

cd "$scratch" || exit 1
Xvfb -displayfd 3 -screen 0 1200x1000x24 -nolisten tcp 3> display > xvfb.log 2>&1 &
pids+=($!)
until_true 10 test -s display || fail "no display"
DISPLAY=:$(cat display)
export DISPLAY QT_QPA_PLATFORM=xcb

kelmora-demo > world.log 2>&1 &
pids+=($!)
until_true 10 holds world.log 'Listening on 127.0.0.1 port 5000' || fail "no world"
kelmora > client.log 2>&1 &
client=$!
pids+=("$client")

main="Kelmora - The Official Client"
focus "$main"
# What the desktop entry says of the window is true.
xdotool search --onlyvisible --class '^kelmora$' > /dev/null 2>&1 || fail "the window is of another class"
xdotool key ctrl+j
sleep 1
line Robin
line 'say hello'
saved session.html
holds session.html 'You say: hello' || fail "the world's answer is not in the saved session"

xdotool key ctrl+l
focus "Aliases"
for _ in 1 2 3 4 5 6 7 8; do
  holds "$mine/aliases.txt" '<Enter your alias here>' && break
  xdotool key Tab
  xdotool key space
  sleep 0.2
done
holds "$mine/aliases.txt" '<Enter your alias here>' || fail "no alias in $mine"
xdotool key Escape
sleep 0.5

focus "$main"
xdotool key ctrl+t
focus "Triggers"
# From the list to "Add trigger", back to "Edit trigger", into the commands, on to the
# pattern, on to "Save trigger".
xdotool key Tab space
until_true 5 holds "$mine/triggers.txt" '<Enter your trigger pattern here>' || fail "no trigger in $mine"
xdotool key shift+Tab shift+Tab space
sleep 0.5
xdotool type --delay 5 'say pong'
xdotool key Tab ctrl+a
xdotool type --delay 5 'You say: ping'
xdotool key Tab space
until_true 5 holds "$mine/triggers.txt" 'You say: ping' || fail "the trigger was not saved"
xdotool key Escape
sleep 0.5
focus "$main"
line 'say ping'
sleep 1
saved triggered.html
holds triggered.html 'You say: pong' || fail "the trigger did not answer"
test "$(ls -A)" = "$(printf '%s\n' client.log display session.html triggered.html world.log xvfb.log)" ||
  fail "the client left files where it was started: $(ls -A)"
grep -q '^KELMORA CLIENT - LICENSES' "$mine/licenses.txt" || fail "no licences in $mine"
kill -0 "$client" || fail "the client is gone"
echo "PASSED: played with the installed commands"
