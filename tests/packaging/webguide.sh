#!/usr/bin/env bash
# The installed pages of the guide are whole: each link and picture leads to a page,
# to its heading or to a picture, each tag is closed, and nothing of the form that
# they were written in is left. 77: there is no awk to make them.
#
#   webguide.sh CMAKE BUILD-FOLDER
set -euo pipefail
cmake=$1 build=$2
command -v awk > /dev/null || { echo "SKIPPED: there is no awk"; exit 77; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() {
  echo "FAILED: $*"
  exit 1
}
tags() { { grep -oE "$1" "$2" || true; } | wc -l; }
"$cmake" --install "$build" --prefix "$scratch" --component client > /dev/null
cd "$scratch/share/doc/kelmora/html"
pages=$(find . -name '*.html' | sort)
links=0
for page in $pages; do
  folder=$(dirname "$page")
  while read -r target; do
    links=$((links + 1))
    case $target in http*) continue ;; esac
    file=${target%%#*} place=${target#"${target%%#*}"}
    file=${file:+$folder/$file}
    [ -f "${file:-$page}" ] || fail "$page leads to $target, which is not there"
    [ -z "$place" ] || grep -q " id=\"${place#\#}\"" "${file:-$page}" || fail "$page leads to $target: no such heading"
  done < <(grep -oE '(href|src)="[^"]*"' "$page" | sed 's/^[a-z]*="//; s/"$//')
  for tag in html head body p ul ol li table tr td th pre code a b i h1 h2 h3; do
    opened=$(tags "<$tag[ >]" "$page") closed=$(tags "</$tag>" "$page")
    [ "$opened" -eq "$closed" ] || fail "$page opens $opened and closes $closed <$tag>"
  done
  # Boxes and words letter by letter may hold such signs.
  left=$(awk '/<style>|<pre>/ { box = 1 } !box { gsub(/<code>[^<]*<\/code>/, ""); print } /<\/style>|<\/pre>/ { box = 0 }' "$page" |
    grep -nE '`|\]\(|^#|\*\*|^\||^[-*] ' || true)
  [ -z "$left" ] || fail "$page still has: $left"
done
[ "$links" -gt 50 ] || fail "only $links links in: $pages"
echo "PASSED: $links links"
