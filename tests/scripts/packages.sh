#!/usr/bin/env bash
# What ./run and ./test say and do about packages on machines of every kind. A
# machine is a folder of stand-ins for its programs, and nothing else is on the
# PATH; what they are told to do stands in a record.
#
#   packages.sh CHECKOUT
set -uo pipefail
checkout=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0

# machine NAME PROGRAM...: a new one, with these of the programs below.
machine() {
  name=$1
  bin="$scratch/bin"
  record="$scratch/record"
  rm -rf "$bin" "$record"
  mkdir "$bin"
  : > "$record"
  local tool
  for tool in cat env grep mktemp rm sleep tail; do ln -s "$(command -v "$tool")" "$bin/$tool"; done
  shift
  for tool in "$@"; do stand_in "$tool"; done
}

stand_in() {
  local body
  case "$1" in
    root) set -- id; body='echo 0' ;;
    user) set -- id; body='echo 1000' ;;
    sudo) body='echo sudo "$@" >> "$RECORD"; exec "$@"' ;;
    cmake) body='exit 0' ;;
    cmake-without-qt) set -- cmake; body='echo "Could not find a package configuration file provided by Qt6"; exit 1' ;;
    ninja) body='exit 0' ;;
    dpkg-query) body='case "${!#}" in *-there) printf "install ok installed" ;; *) exit 1 ;; esac' ;;
    apt-cache) body='case "$2" in *-unknown) ;; *) echo "  Candidate: 1.0-1"; sleep 0.05; echo "  Version table:" ;; esac' ;;
    apt-get) body='echo apt-get "$@" >> "$RECORD"' ;;
    apt-get-offline) set -- apt-get; body='echo apt-get "$@" >> "$RECORD"; echo "Temporary failure resolving" >&2; exit 100' ;;
  esac
  printf '#!%s\n%s\n' "$BASH" "$body" > "$bin/$1"
  chmod +x "$bin/$1"
}

# ensure NEEDED [WISHED]: as ./run and ./test call it; they build after "built".
ensure() {
  told=$(cd "$checkout" && RECORD="$record" PATH="$bin" "$BASH" -c \
    'set -euo pipefail; . scripts/setup.sh; ensure_packages "$@"; echo built' ensure "$@" 2>&1)
  status=$?
}

fail() {
  printf 'FAILED: %s: %s\n--- told (%s):\n%s\n--- done:\n%s\n' "$name" "$1" "$status" "$told" "$(cat "$record")"
  failures=$((failures + 1))
}
tells() { grep -qF -- "$1" <<< "$told" || fail "does not tell \"$1\""; }
tells_not() { ! grep -qF -- "$1" <<< "$told" || fail "tells \"$1\""; }
done_is() { [ "$(cat "$record")" = "$1" ] || fail "did not do \"$1\""; }
builds() { [ "$status" -eq 0 ] && [ "$(tail -n 1 <<< "$told")" = built ] || fail "does not build"; }
stops() { [ "$status" -ne 0 ] && ! grep -qx built <<< "$told" || fail "goes on"; }
tells_how_by_hand() {
  tells "a C++20 compiler, CMake 3.22 or later"
  tells "Core, Gui, Widgets, Network, Multimedia"
  tells "cmake -S . -B build && cmake --build build"
  tells "cmake -S . -B build -DBUILD_TESTING=ON"
  tells_not "command not found"
}

machine "no apt, all that a build needs" root cmake ninja
ensure "a b"
tells "There is no apt here"
tells_how_by_hand
tells "going on"
builds

machine "no apt, no CMake" root ninja
ensure "a b"
tells_how_by_hand
tells "there is no cmake on the PATH"
stops

machine "no apt, no Qt" root cmake-without-qt ninja
ensure "a b"
tells_how_by_hand
tells "Could not find a package configuration file provided by Qt6"
stops

machine "apt, nothing missing" user dpkg-query apt-get apt-cache
ensure "a-there b-there" "c-there"
tells "Nothing to install"
tells_not "There is no apt"
done_is ""
builds

machine "apt, root" root dpkg-query apt-get apt-cache
ensure "a-there b" "c d-there"
tells "Installing with apt-get: b c"
done_is "apt-get update
apt-get install -y --no-install-recommends b c"
builds

machine "apt, not root but sudo" user sudo dpkg-query apt-get apt-cache
ensure "a"
done_is "sudo apt-get update
apt-get update
sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends a
apt-get install -y --no-install-recommends a"
builds

machine "apt, neither root nor sudo, no CMake" user dpkg-query apt-get apt-cache
ensure "a b-there" "c"
tells "installing them takes root"
tells "apt-get install --no-install-recommends a c"
tells_how_by_hand
done_is ""
stops

machine "apt, neither root nor sudo, only a test's helper missing" user cmake ninja dpkg-query apt-get apt-cache
ensure "a-there" "c"
tells "apt-get install --no-install-recommends c"
builds

machine "apt without a network" root dpkg-query apt-get-offline apt-cache
ensure "a"
tells "apt-get could not ask its mirrors"
tells "apt-get could not install them"
tells_how_by_hand
done_is "apt-get update
apt-get install -y --no-install-recommends a"
stops

machine "apt without a network, all that a build needs" root cmake ninja dpkg-query apt-get-offline apt-cache
ensure "a-there" "c"
tells "apt-get could not install them"
builds

machine "a release without one of the tests' helpers" root dpkg-query apt-get apt-cache
ensure "a" "c-unknown d"
tells "Not in this release, so the tests that use them are skipped: c-unknown"
done_is "apt-get update
apt-get install -y --no-install-recommends a d"
builds

machine "a release without the only helper that is missing" root dpkg-query apt-get apt-cache
ensure "a-there" "c-unknown"
done_is "apt-get update"
builds

[ "$failures" -eq 0 ] && echo "PASSED"
exit "$((failures > 0))"
