# Makes a web page of one of the pages in docs/, for those who have the program and
# not its sources. Knows of Markdown what those pages use: headings, paragraphs,
# lists, tables, boxes, pictures, links, words in bold, italics or letter by letter.
#
#   awk -v pages=" guide.md guide/recipes.md " -v here=guide/recipes.md -f guide.awk FILE
#
# A link to a page that is not among PAGES becomes plain words.

function escaped(text) {
  gsub(/&/, "\\&amp;", text)
  gsub(/</, "\\&lt;", text)
  gsub(/>/, "\\&gt;", text)
  gsub(/"/, "\\&quot;", text)
  return text
}

# A heading's name in links: small letters, blanks as hyphens, no other marks.
function anchor(text) {
  text = tolower(text)
  gsub(/[^a-z0-9 _-]/, "", text)
  gsub(/ /, "-", text)
  return text
}

# The path from the top of a link on this page.
function from_top(target, parts, count, i, folder) {
  folder = here
  if (!sub(/[^\/]*$/, "", folder)) folder = ""
  while (sub(/^\.\.\//, "", target)) sub(/[^\/]*\/$/, "", folder)
  return folder target
}

function link(words, target, page, place) {
  if (target ~ /^[a-z]+:/) return "<a href=\"" target "\">" words "</a>"
  page = target
  place = ""
  if (match(target, /#/)) {
    page = substr(target, 1, RSTART - 1)
    place = substr(target, RSTART)
  }
  if (page != "" && index(pages, " " from_top(page) " ") == 0) return words
  sub(/\.md$/, ".html", page)
  return "<a href=\"" page place "\">" words "</a>"
}

# Bold and italic words of a text without links, boxes or letters.
function stressed(text) {
  while (match(text, /\*\*[^*]+\*\*/))
    text = substr(text, 1, RSTART - 1) "<b>" substr(text, RSTART + 2, RLENGTH - 4) "</b>" substr(text, RSTART + RLENGTH)
  while (match(text, /\*[^* ][^*]*\*/))
    text = substr(text, 1, RSTART - 1) "<i>" substr(text, RSTART + 1, RLENGTH - 2) "</i>" substr(text, RSTART + RLENGTH)
  return text
}

function inline(text, done, found, before, middle, words, target) {
  done = ""
  while (match(text, /`[^`]+`|!?\[[^]]*\]\([^)]*\)/)) {
    found = substr(text, RSTART, RLENGTH)
    before = substr(text, 1, RSTART - 1)
    text = substr(text, RSTART + RLENGTH)
    done = done stressed(escaped(before))
    if (found ~ /^`/) {
      done = done "<code>" escaped(substr(found, 2, length(found) - 2)) "</code>"
      continue
    }
    middle = index(found, "](")
    words = substr(found, 1, middle - 1)
    target = substr(found, middle + 2, length(found) - middle - 2)
    sub(/^!?\[/, "", words)
    if (found ~ /^!/)
      done = done "<img src=\"" target "\" alt=\"" escaped(words) "\">"
    else
      done = done link(inline(words), target)
  }
  return done stressed(escaped(text))
}

# A point of a list stays open for a table in it.
function end_text() {
  if (text == "") return
  if (list == "") print "<p>" inline(text) "</p>"
  else { print "<li>" inline(text); point = 1 }
  text = ""
}
function end_point() {
  end_text()
  if (table) print "</table>"
  if (point) print "</li>"
  table = point = 0
}
function end_block() {
  end_point()
  if (list != "") print "</" list ">"
  list = ""
}
function begin_point(kind, words) {
  end_point()
  if (list != kind) {
    end_block()
    print "<" kind ">"
    list = kind
  }
  text = words
}

function row(line, kind, cells, count, i, out) {
  sub(/^\| */, "", line)
  sub(/ *\|$/, "", line)
  count = split(line, cells, / *\| */)
  out = "<tr>"
  for (i = 1; i <= count; i++) out = out "<" kind ">" inline(cells[i]) "</" kind ">"
  print out "</tr>"
}

function head(title) {
  print "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">"
  print "<meta name=\"viewport\" content=\"width=device-width\">"
  print "<title>" escaped(title) " - Kelmora</title>\n<style>"
  print "body { max-width: 46em; margin: 2em auto; padding: 0 1em; font-family: sans-serif; line-height: 1.5;"
  print "       color: #222; background: #fff }"
  print "img { max-width: 100%; border: 1px solid #bbb }"
  print "pre, code { font-family: monospace; background: #f0f0ea }"
  print "pre { padding: 0.6em 0.8em; white-space: pre-wrap }"
  print "table { border-collapse: collapse }"
  print "th, td { border: 1px solid #bbb; padding: 0.2em 0.5em; text-align: left; vertical-align: top }"
  print "</style>\n</head>\n<body>"
}

box && /^```/ { print "</pre>"; box = 0; next }
box { print escaped($0); next }
/^```/ { end_block(); printf "<pre>"; box = 1; next }
/^#+ / {
  end_block()
  level = index($0, " ") - 1
  title = substr($0, level + 2)
  if (level == 1 && !begun++) head(title)
  print "<h" level " id=\"" anchor(title) "\">" inline(title) "</h" level ">"
  next
}
/^[ \t]*$/ { end_text(); after_blank = 1; next }
/^ *\|/ {
  indented = sub(/^ +/, "")
  after_blank = 0
  if (!table) {
    if (indented) end_text(); else end_block()
    print "<table>"
    table = 1
    row($0, "th")
    next
  }
  if ($0 !~ /^\|[-| :]+$/) row($0, "td")
  next
}
/^[-*] / { begin_point("ul", substr($0, 3)); after_blank = 0; next }
/^[0-9]+\. / { words = $0; sub(/^[0-9]+\. +/, "", words); begin_point("ol", words); after_blank = 0; next }
{
  # A line from the margin behind a list's blank line is the next paragraph.
  if (table || (list != "" && after_blank)) end_block()
  after_blank = 0
  sub(/^ +/, "")
  text = text (text == "" ? "" : "\n") $0
}
END { end_block(); print "</body>\n</html>" }
