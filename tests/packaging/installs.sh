#!/usr/bin/env bash
# Installs into a scratch folder and starts the launcher there: the client runs
# in a folder of its own and finds the licences in it.
#
#   installs.sh CMAKE BUILD-FOLDER
set -euo pipefail
cmake=$1 build=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$cmake" --install "$build" --prefix "$scratch/usr" > "$scratch/install.log"
for file in bin/kelmora bin/kelmora-launcher share/kelmora/licenses.txt \
  share/applications/kelmora.desktop share/icons/hicolor/256x256/apps/kelmora.png; do
  test -s "$scratch/usr/$file" || { echo "FAILED: $file is not installed"; exit 1; }
done

# In the client's place: tells where it was started and what it finds there.
printf '#!/bin/sh\npwd\nhead -c 60 licenses.txt\n' > "$scratch/usr/bin/kelmora"
mkdir "$scratch/home"
told=$(env -u XDG_DATA_HOME HOME="$scratch/home" "$scratch/usr/bin/kelmora-launcher")
case "$told" in
  "$scratch/home/.local/share/kelmora"*[a-z]*) echo "PASSED: $told" ;;
  *) echo "FAILED: started in $told"; exit 1 ;;
esac
cmp "$scratch/usr/share/kelmora/licenses.txt" "$scratch/home/.local/share/kelmora/licenses.txt"
