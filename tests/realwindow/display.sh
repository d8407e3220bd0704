# Sourced by the scripts that need a display: a scratch folder that goes with
# everything started, a display of its own, and ways to wait.

# need TOOL...: ends as skipped where one is missing.
need() {
  for tool in "$@"; do
    command -v "$tool" > /dev/null || { echo "SKIPPED: $tool is not installed"; exit 77; }
  done
}

scratch=$(mktemp -d)
pids=()
finish() {
  for pid in "${pids[@]}"; do kill "$pid" 2> /dev/null; done
  wait 2> /dev/null
  rm -rf "$scratch"
}
trap finish EXIT

fail() {
  echo "FAILED: $*"
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
# picture NAME: of the whole display, if a folder for pictures was asked for.
picture() {
  [ -z "${pictures:-}" ] || ! command -v import > /dev/null ||
    import -window root "$pictures/$1.png"
}

# The server picks a free display and says which one.
start_display() {
  Xvfb -displayfd 3 -screen 0 1200x1000x24 -nolisten tcp 3> display > xvfb.log 2>&1 &
  pids+=($!)
  until_true 10 test -s display || fail "no display: $(cat xvfb.log)"
  DISPLAY=:$(cat display)
  export DISPLAY
}

# start_world PROGRAM: the demo world, and a store that leads the client to it.
start_world() {
  "$1" --port 0 > world.log 2>&1 &
  pids+=($!)
  until_true 10 holds world.log Listening || fail "no world: $(cat world.log)"
  local port
  port=$(sed -n 's/.* port \([0-9]*\)$/\1/p' world.log)
  mkdir -p "$XDG_CONFIG_HOME/Dunmere Works"
  printf '[Global%%20Settings]\nhostName=127.0.0.1\nport=%s\npos=@Point(20 20)\n' "$port" \
    > "$XDG_CONFIG_HOME/Dunmere Works/Kelmora Client v3.9b.conf"
}
