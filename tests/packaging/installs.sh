#!/usr/bin/env bash
# Installs into a scratch folder: all is there, and each package has its part.
#
#   installs.sh CMAKE BUILD-FOLDER GUIDE (1: with its web pages, 0: without)
set -euo pipefail
cmake=$1 build=$2 guide=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() {
  echo "FAILED: $*"
  exit 1
}

"$cmake" --install "$build" --prefix "$scratch/usr" > "$scratch/install.log"
for component in client demo; do
  "$cmake" --install "$build" --prefix "$scratch/$component" --component "$component" > "$scratch/install.log"
done
has() { test -s "$1" || fail "$1 is not installed"; }
for file in bin/kelmora libexec/kelmora/kelmora share/kelmora/licenses.txt share/applications/kelmora.desktop \
  share/metainfo/example.kelmora.kelmora.metainfo.xml share/doc/kelmora/copyright; do
  has "$scratch/client/$file"
done
for file in bin/kelmora-demo share/applications/kelmora-demo.desktop share/doc/kelmora-demo/copyright; do has "$scratch/demo/$file"; done
compgen -G "$scratch/client/share/man/man6/kelmora.6*" > /dev/null || fail "no manual page of the client"
compgen -G "$scratch/demo/share/man/man6/kelmora-demo.6*" > /dev/null || fail "no manual page of the demo world"
for size in 16 22 24 32 48 64 128 256; do
  icon=$scratch/client/share/icons/hicolor/${size}x$size/apps/kelmora.png
  has "$icon"
  # Width and height stand behind the name of a PNG's first block.
  told=$(od -An -tu1 -j16 -N8 "$icon" | tr -s ' ')
  [ "$told" = " 0 0 $((size / 256)) $((size % 256)) 0 0 $((size / 256)) $((size % 256))" ] ||
    fail "$icon has another size: $told"
done

if [ "$guide" -eq 1 ]; then
  for page in guide.html guide/first-steps.html images/start.png; do has "$scratch/client/share/doc/kelmora/html/$page"; done
fi
# Each entry of the menu starts a command that is there.
for part in client demo; do
  for entry in "$scratch/$part"/share/applications/*.desktop; do
    command=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$entry")
    [ -x "$scratch/$part/bin/$command" ] || fail "$entry starts $command, which is not there"
  done
done

# What is installed without a choice is both packages, and no file is in two.
list() { (cd "$1" && find . -not -type d | sort); }
[ "$(list "$scratch/usr")" = "$({ list "$scratch/client"; list "$scratch/demo"; } | sort)" ] ||
  fail "the parts are not the whole: $(list "$scratch/usr")"
echo "PASSED"
