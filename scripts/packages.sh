# Sourced by setup.sh: what the project needs of a machine, and how to get it.

# The names are Debian's. qt6-l10n-tools brings lrelease and lupdate, for the client
# in other languages than English, and cmark-gfm makes web pages of the guide.
build_packages="build-essential cmake ninja-build qt6-base-dev qt6-multimedia-dev libgl-dev qt6-l10n-tools cmark-gfm"
# Tests that miss one of these are skipped. Qt Test comes with qt6-base-dev. The
# three proxies are real peers for the connection tests; xvfb and xdotool give
# those of the window a real display, weston and qt6-wayland one for Wayland; dbus
# and at-spi2-core give it a bus on which they hear what a screen reader is told; the
# last four read what is installed.
test_packages="microsocks dante-server tinyproxy xvfb xdotool weston qt6-wayland dbus at-spi2-core desktop-file-utils appstream man-db groff-base"

# ensure_packages NEEDED [WISHED]: two lists of names. Installs with apt-get what
# is not there, of the wished ones those that this release of Debian has. Where
# that cannot be done it says what is needed and how to build by hand, and goes
# on only if a build is possible as things are.
ensure_packages() {
  if ! has_program apt-get || ! has_program dpkg-query; then
    say "There is no apt here, so nothing can be installed for you."
    go_on_by_hand
    return
  fi
  local missing wished
  missing="$(not_installed $1)"
  wished="$(not_installed ${2:-})"
  if [ -z "$missing$wished" ]; then
    say "Nothing to install: all needed packages are there."
    return
  fi
  local as_root=""
  if [ "$(id -u)" -ne 0 ]; then
    if ! has_program sudo; then
      say "These packages are missing, and installing them takes root (or sudo):"
      say "  apt-get install --no-install-recommends" $missing $wished
      go_on_by_hand
      return
    fi
    as_root="sudo"
  fi
  say "Installing with apt-get:" $missing $wished
  $as_root apt-get update || say "apt-get could not ask its mirrors for what there is."
  local absent
  absent="$(not_offered $wished)"
  if [ -n "$absent" ]; then
    say "Not in this release, so the tests that use them are skipped:" $absent
    wished="$(without "$absent" $wished)"
  fi
  if [ -n "$missing$wished" ] &&
    ! $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $missing $wished; then
    say "apt-get could not install them; above it says why. Is there a network, and is"
    say "this Debian 12 or later, or another system with Qt 6.4?"
    go_on_by_hand
  fi
}

has_program() { command -v "$1" > /dev/null 2>&1; }

# contains PATTERN TEXT. Not by a pipe: who writes into one that grep has left
# fails, and the pipe with it.
contains() { grep -q "$1" <<< "$2"; }

# not_installed NAME...: those of them that are not.
not_installed() {
  local package
  for package in "$@"; do
    contains 'ok installed' "$(dpkg-query -W -f='${Status}' "$package" 2> /dev/null)" || printf '%s\n' "$package"
  done
}

# not_offered NAME...: those that no mirror of apt's has.
not_offered() {
  local package
  for package in "$@"; do
    contains 'Candidate: [^(]' "$(LC_ALL=C apt-cache policy "$package" 2> /dev/null)" || printf '%s\n' "$package"
  done
}

# without LIST NAME...: the names that are not in the list.
without() {
  local list="$1" package
  shift
  for package in "$@"; do
    grep -qx "$package" <<< "$list" || printf '%s\n' "$package"
  done
}

# go_on_by_hand: says what is needed; ends the script unless CMake finds it all.
go_on_by_hand() {
  cat <<'END'
    The client needs
      a C++20 compiler, CMake 3.22 or later, Ninja
      Qt 6.4 or later, with its headers: Core, Gui, Widgets, Network, Multimedia
      and, to speak more than English, Qt's lrelease,
      and, to install the guide as web pages, cmark-gfm
    and its tests also
      Qt Test, and for some of them, which are skipped otherwise: microsocks,
      Dante, tinyproxy, Xvfb, xdotool, D-Bus, AT-SPI, desktop-file-validate,
      appstreamcli, man
    By hand it is built and played, without Ninja too, with
      cmake -S . -B build && cmake --build build
      build/demo/kelmora-demo & build/src/app/kelmora
    and tested with
      cmake -S . -B build -DBUILD_TESTING=ON && cmake --build build
      ctest --test-dir build --output-on-failure
END
  local program
  for program in cmake ninja; do
    if ! has_program "$program"; then
      say "Stopped: there is no $program on the PATH."
      exit 1
    fi
  done
  local scratch
  scratch="$(mktemp -d)"
  if ! cmake -S . -B "$scratch" -G Ninja > "$scratch/log" 2>&1; then
    tail -n 20 "$scratch/log"
    rm -rf "$scratch"
    say "Stopped: CMake does not find all that is needed; above it says what."
    exit 1
  fi
  rm -rf "$scratch"
  say "CMake finds all that a build needs: going on."
}
