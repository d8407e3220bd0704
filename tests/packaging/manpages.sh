#!/usr/bin/env bash
# The manual pages tell the options that --help tells, in the same words, and
# render without a warning where man is installed.
#
#   manpages.sh FOLDER CLIENT DEMO-WORLD
set -euo pipefail
folder=$1
failures=0

# One option a line, as "-h, --help: What it does."
in_help() {
  "$1" --help | sed -n 's/^  \(-.*[^ ]\)   *\([A-Z].*\)$/\1: \2/p' | tr -d '<>' | sed 's/  *:/:/'
}
in_page() {
  sed -n '/^\.SH OPTIONS/,/^\.SH EXIT/p' "$1" |
    sed -n '/^\.TP/{n;s/^\.B[RI] *//;s/["\\]//g;s/  */ /g;s/ , /, /;h;n;H;x;s/\n/: /;p}'
}
for program in "$2" "$3"; do
  page=$folder/$(basename "$program").6
  told=$(in_help "$program") written=$(in_page "$page")
  if [ -z "$told" ] || [ "$told" != "$written" ]; then
    printf 'FAILED: --help tells\n%s\nand %s\n%s\n' "$told" "$page" "$written"
    failures=1
  fi
  if command -v man > /dev/null && command -v groff > /dev/null; then
    warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 > /dev/null) || true
    if [ -n "$warnings" ]; then
      printf 'FAILED: %s: %s\n' "$page" "$warnings"
      failures=1
    fi
  fi
done
[ "$failures" -eq 0 ] && echo "PASSED"
exit "$failures"
