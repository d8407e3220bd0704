#!/usr/bin/env bash
# The installed pages of the guide are whole: each link and picture leads to a page,
# to its heading or to a picture, each tag is closed, each heading has a name of its own,
# nothing of the form that they were written in is left, and nothing was left out. 77:
# they were not made, because there is no cmark-gfm.
#
#   webguide.sh CMAKE BUILD-FOLDER MADE (1 or 0)
set -euo pipefail
cmake=$1 build=$2 made=$3
[ "$made" -eq 1 ] || { echo "SKIPPED: there is no cmark-gfm"; exit 77; }
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
  for tag in html head body p ul ol li table thead tbody tr td th pre code a strong em blockquote h1 h2 h3 h4; do
    opened=$(tags "<$tag[ >]" "$page") closed=$(tags "</$tag>" "$page")
    [ "$opened" -eq "$closed" ] || fail "$page opens $opened and closes $closed <$tag>"
  done
  # Boxes and words letter by letter may hold such signs.
  left=$(sed -e 's|<pre>.*</pre>||' -e '/<style>/,/<\/style>/d' -e '/<pre>/,/<\/pre>/d' -e 's|<code>[^<]*</code>||g' "$page" |
    grep -nE '`|\]\(|^#|\*\*|^\||^[-*] ' || true)
  [ -z "$left" ] || fail "$page still has: $left"
  twice=$(grep -oE ' id="[^"]*"' "$page" | sort | uniq -d)
  [ -z "$twice" ] || fail "$page has more than one $twice"
  # The converter says so where a page has HTML of its own.
  ! grep -n 'raw HTML omitted' "$page" || fail "$page lacks what stands there in the source"
done
[ "$links" -gt 50 ] || fail "only $links links in: $pages"
echo "PASSED: $links links"
