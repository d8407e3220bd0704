# Sourced by ./run and ./test: says what is missing on a Debian machine,
# installs it, and builds.

say() { printf '==> %s\n' "$*"; }

. scripts/packages.sh

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
