#!/usr/bin/env bash
# What menus and shops of software read is valid, as far as their tools are
# installed, and each picture that it names is one of docs/.
#
#   metadata.sh SOURCES BUILT      77: none of the tools is there
set -euo pipefail
sources=$1 built=$2
ran=0
pictures=$(sed -n 's|.*<image>.*/\(.*\)</image>.*|\1|p' "$sources/metainfo.xml.in")
[ -n "$pictures" ] || { echo "FAILED: no picture is named"; exit 1; }
for picture in $pictures; do
  [ -s "$sources/../docs/images/$picture" ] || { echo "FAILED: there is no picture $picture"; exit 1; }
done
if command -v desktop-file-validate > /dev/null; then
  told=$(desktop-file-validate "$sources"/*.desktop 2>&1) || true
  [ -z "$told" ] || { echo "FAILED: $told"; exit 1; }
  ran=$((ran + 1))
fi
if command -v appstreamcli > /dev/null; then
  appstreamcli validate --no-net "$built/example.kelmora.kelmora.metainfo.xml"
  ran=$((ran + 1))
fi
[ "$ran" -gt 0 ] || { echo "SKIPPED: neither desktop-file-validate nor appstreamcli is installed"; exit 77; }
echo "PASSED: $ran of 2 tools"
