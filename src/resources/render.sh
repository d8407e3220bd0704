#!/bin/sh
# Draws the PNG files beside icons/svg/ from the SVG sources in it, and makes
# the beep. The results are committed, so that building the program needs none
# of these tools.
#
# Needs: rsvg-convert (Debian: librsvg2-bin), python3. No font is needed: all
# lettering in the SVG files is outlines.
set -eu
cd "$(dirname "$0")"

# name, then width and height in device-independent pixels; @2x is twice that
render() {
  rsvg-convert -w "$2" -h "$3" "icons/svg/$1.svg" -o "icons/$1.png"
}
render_2x() {
  rsvg-convert -w "$(($2 * 2))" -h "$(($3 * 2))" "icons/svg/$1.svg" -o "icons/$1@2x.png"
}

for icon in connect disconnect savebuffer savesettings loadsettings configure proxy \
  macros aliases triggers help style; do
  render "$icon" 48 48
  render_2x "$icon" 48 48
done
render mainicon 256 256
# For menus and task bars; mainicon.png is the largest of them.
for size in 16 22 24 32 48 64 128; do
  rsvg-convert -w "$size" -h "$size" icons/svg/mainicon.svg -o "../../packaging/icons/$size.png"
done
render splash 560 320
render_2x splash 560 320

python3 make-beep.py
