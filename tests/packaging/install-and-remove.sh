#!/usr/bin/env bash
# In a minimal Debian that is thrown away, as root: installs the packages beside
# this script, lets a new user play, removes them, and fails if anything but the
# player's own files is left of them.
set -euo pipefail
cd "$(dirname "$0")"
say() { printf -- '--- %s\n' "$*"; }
export DEBIAN_FRONTEND=noninteractive

say "Installing the packages"
apt-get update > /dev/null
apt-get install -y --no-install-recommends "$PWD"/*.deb > install.log 2>&1 || { tail -n 20 install.log; exit 1; }
dpkg-query -W -f='${Package} ${Version} ${Status}\n' kelmora kelmora-demo
test -s /usr/share/doc/kelmora/html/guide.html || { echo "FAILED: the guide is not installed"; exit 1; }

say "Asking for version and help, which makes no folder"
useradd --create-home player
as_player() { su player -c "$1"; }
as_player 'kelmora --version && kelmora --help > /dev/null && kelmora-demo --version && test ! -e ~/.local'

say "Installing a display to play on"
apt-get install -y --no-install-recommends xvfb xdotool > display.log 2>&1 || { tail -n 20 display.log; exit 1; }
as_player "bash $PWD/play-installed.sh"

say "Removing the packages"
dpkg -L kelmora kelmora-demo | sort -u > listed
apt-get purge -y kelmora kelmora-demo > remove.log 2>&1 || { tail -n 20 remove.log; exit 1; }
left="$(while read -r path; do [ ! -f "$path" ] && [ ! -L "$path" ] || echo "$path"; done < listed)"
left+="$(find / -xdev \( -path /proc -o -path /packages -o -path /home/player -o -path /var/log -o -path /tmp \) -prune \
  -o -iname '*kelmora*' -print)"
[ -z "$left" ] || { echo "FAILED: left behind: $left"; exit 1; }
say "What is left in the player's home"
(cd /home/player && find .local .config -not -type d | sort)
test -s /home/player/.local/share/kelmora/aliases.txt
