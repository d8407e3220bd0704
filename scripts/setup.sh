# Sourced by ./run and ./test: says what is missing on a Debian machine,
# installs it, and builds.

build_packages="build-essential cmake ninja-build qt6-base-dev qt6-multimedia-dev libgl-dev"

say() { printf '==> %s\n' "$*"; }

# ensure_packages NAME...: installs with apt-get those that are not there.
ensure_packages() {
  local missing=()
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  if [ ${#missing[@]} -eq 0 ]; then
    say "Nothing to install: all needed packages are there."
    return
  fi
  say "Installing with apt-get: ${missing[*]}"
  local sudo=""
  if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
  $sudo apt-get update
  $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}

# build PRESET [TARGET...]: configures and builds, all or the targets, and says
# how far it is. A compiler cache is used where there is one.
build() {
  local preset=$1
  shift
  say "Setting up the build (preset $preset)"
  cmake --preset "$preset" > /dev/null
  say "Building ${*:-everything}"
  NINJA_STATUS="${NINJA_STATUS-[%f of %t, %e s] }" cmake --build --preset "$preset" ${@:+--target "$@"}
}
