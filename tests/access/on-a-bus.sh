#!/usr/bin/env bash
# Runs a program with a display and an accessibility bus of its own, on which it
# hears what a screen reader would hear of the client.
#
#   on-a-bus.sh PROGRAM [ARGUMENTS]      77: skipped, something is not installed
set -uo pipefail

. "$(dirname "$0")/../realwindow/display.sh"
need Xvfb dbus-run-session
[ -e /usr/share/dbus-1/services/org.a11y.Bus.service ] ||
  { echo "SKIPPED: at-spi2-core is not installed"; exit 77; }

# The bus has its socket here, and dbus does without the settings of a desktop.
mkdir -m 700 "$scratch/run" "$scratch/home"
export XDG_RUNTIME_DIR=$scratch/run HOME=$scratch/home GSETTINGS_BACKEND=memory
# The client speaks the desktop's language.
export LC_ALL=C.UTF-8
unset LANGUAGE WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS

# The server picks a free display and says which one. It stays as it is when the bus,
# which looks at it only once, leaves it without a client.
Xvfb -displayfd 3 -screen 0 1200x1000x24 -nolisten tcp -noreset 3> "$scratch/display" \
  > "$scratch/xvfb.log" 2>&1 &
pids+=($!)
until_true 10 test -s "$scratch/display" || fail "no display: $(cat "$scratch/xvfb.log")"
DISPLAY=:$(cat "$scratch/display")
export DISPLAY

# The buses tell whom they have started.
dbus-run-session -- "$@" 2> "$scratch/errors"
code=$?
grep -v 'dbus-daemon\[\|^SpiRegistry daemon' "$scratch/errors" >&2
exit "$code"
