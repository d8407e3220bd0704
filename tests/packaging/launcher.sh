#!/usr/bin/env bash
# The installed command starts the program in the player's folder and leaves
# alone what is there.
#
#   launcher.sh CMAKE BUILD-FOLDER
set -euo pipefail
cmake=$1 build=$2
scratch=$(cd "$(mktemp -d)" && pwd -P)
trap 'rm -rf "$scratch"' EXIT
fail() {
  echo "FAILED: $*"
  exit 1
}
"$cmake" --install "$build" --prefix "$scratch/usr" --component client > "$scratch/install.log"

# In the program's place: tells where it was started, and with what.
printf '#!/bin/sh\npwd -P\nprintf "<%%s>\\n" "$@"\n' > "$scratch/usr/libexec/kelmora/kelmora"
kelmora=$scratch/usr/bin/kelmora
licences=$scratch/usr/share/kelmora/licenses.txt
mkdir "$scratch/home" "$scratch/elsewhere"
cd "$scratch/elsewhere"
export HOME=$scratch/home
unset XDG_DATA_HOME
mine=$HOME/.local/share/kelmora

for question in -h --help -v --version; do
  [ "$("$kelmora" "$question")" = "$PWD
<$question>" ] || fail "$question does not reach the program as it is"
done
[ -z "$(ls -A "$HOME")" ] || fail "a question made a folder"

[ "$("$kelmora" -style 'a b' --help)" = "$mine
<-style>
<a b>
<--help>" ] || fail "not started in $mine with its arguments"
cmp "$licences" "$mine/licenses.txt" || fail "the licences are not found"
[ "$(ls -A "$mine")" = licenses.txt ] || fail "a first start copied something: $(ls -A "$mine")"
[ -z "$(ls -A)" ] || fail "left files where it was started"

for file in aliases.txt triggers.txt macros.txt variables.txt; do echo "of the player" > "$mine/$file"; done
"$kelmora" > /dev/null
for file in aliases.txt triggers.txt macros.txt variables.txt; do
  [ "$(cat "$mine/$file")" = "of the player" ] || fail "$file was written over"
done

rm "$mine/licenses.txt"
echo "of the player" > "$mine/licenses.txt"
"$kelmora" > /dev/null
[ "$(cat "$mine/licenses.txt")" = "of the player" ] || fail "the player's licenses.txt was written over"
ln -sf "$mine/aliases.txt" "$mine/licenses.txt"
"$kelmora" > /dev/null
[ "$(cat "$mine/licenses.txt")" = "of the player" ] || fail "the player's link was replaced"
ln -sf "$scratch/moved/licenses.txt" "$mine/licenses.txt"
"$kelmora" > /dev/null
cmp "$licences" "$mine/licenses.txt" || fail "a link that led nowhere was not mended"

# What hinders it is for the program to tell, and nothing is put where it was started.
printf '#!/bin/sh\npwd -P\necho "<$KELMORA_FOLDER>"\n' > "$scratch/usr/libexec/kelmora/kelmora"
[ "$("$kelmora")" = "$mine
<$mine>" ] || fail "the program is not told its folder"
: > "$scratch/no folder"
[ "$(XDG_DATA_HOME="$scratch/no folder" "$kelmora" 2> told)" = "$PWD
<$scratch/no folder/kelmora>" ] || fail "a folder that cannot be made is not left to the program"
grep -q 'no folder' told || fail "a terminal is not told why: $(cat told)"
rm told
[ -z "$(ls -A)" ] || fail "left files where it was started: $(ls -A)"

XDG_DATA_HOME="$scratch/data of mine" "$kelmora" > told
grep -qx "$scratch/data of mine/kelmora" told || fail "XDG_DATA_HOME is not followed: $(cat told)"
XDG_DATA_HOME=relative "$kelmora" > told
grep -qx "$mine" told || fail "a relative XDG_DATA_HOME is followed: $(cat told)"
ln -s "$kelmora" "$scratch/link"
"$scratch/link" > told
grep -qx "$mine" told || fail "a link to the command does not start it: $(cat told)"
if env -u HOME "$kelmora" > told 2>&1; then fail "starts without a place for the player's files"; fi
grep -q 'no place for your files' told || fail "does not say what is missing: $(cat told)"
echo "PASSED"
