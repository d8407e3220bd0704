# Sourced by ./run and ./test: says what is missing on a Debian machine,
# installs it, and builds.

say() { printf '==> %s\n' "$*"; }

. scripts/packages.sh

# build PRESET: configures and builds; a compiler cache is used where there is one.
build() {
  say "Building (preset $1)"
  cmake --preset "$1" > /dev/null
  cmake --build --preset "$1"
}
