#include "LayoutContents.h"

#include <QFontDatabase>

namespace layout_contents {

namespace {

Content htmlContent(const char* name, const char* html) {
  return {name, [html](QTextBrowser& browser) { insertHtml(browser, QString::fromUtf8(html)); }};
}
/// "|" stands for a line break within a paragraph.
Content textContent(const char* name, const char* text) {
  return {name, [text](QTextBrowser& browser) {
            insertText(browser, QString::fromUtf8(text).replace(u'|', QChar::LineSeparator));
          }};
}

std::vector<Content> textContents() {
  return {
      {"nothing", [](QTextBrowser& /*browser*/) {}},
      textContent("one word", "lamp"),
      textContent("lines of one paragraph", "You see a lamp.|It is lit.|Exits: north, south.|"),
      textContent("lines that are paragraphs", "You see a lamp.\nIt is lit.\nExits: north.\n"),
      textContent(
          "long lines that wrap",
          "You stand in a long and winding hall whose walls are hung with banners of every "
          "house that ever held this keep, and of some that only wished to.|Dust lies deep "
          "on the floor.\nA draught from the north smells of the sea, of tar and of rope.|"),
      textContent(
          "words wider than the page",
          "short|averyveryveryverylongwordwithoutanyplaceatwhichitcouldbebrokenintotwo and "
          "short again\n----------------------------------------------------------------\n"),
      textContent("text from right to left",
                  "שלום עולם, זו שורה ארוכה מספיק כדי להישבר בחלון צר מאוד.|قصير\nשלום.\n"),
      textContent("both directions in a line",
                  "You hear שלום from the north, and then مرحبا from the south, as they pass.|"
                  "אחת two שלוש 4 five|(שלום)\n"),
      textContent("emoji and ideographs",
                  "smile 😀 👩‍👩‍👧 "
                  "end|漢字かな交じり文は長くても何処でも折り返す事が出来る筈なのだが。|ａｂｃ\n"),
      textContent("other scripts and marks over letters",
                  "e\u0301 a\u0308\u0304 ไทย Ελληνικά Кириллица|soft\u00ADhyphen zero\u200Bwidth "
                  "no\u2060break\u200D\u200E mark\n"),
      textContent("tabs and hard blanks",
                  "a\tb\tc|\tname\t12/40|x\u00A0\u00A0\u00A0y\u00A0z   three   blanks   "
                  "|\u00A0\u00A0first\n"),
      textContent(
          "blanks at the ends of wrapped lines",
          "one two three four five six seven eight nine ten                    eleven twelve"
          "                                                             thirteen\n"),
      textContent("empty lines and empty paragraphs", "|||a|\n\n\n|b\n\n"),
      textContent("words broken at hidden hyphens",
                  "soft\u00ADly soft\u00ADly soft\u00ADly soft\u00ADly soft\u00ADly "
                  "soft\u00ADly soft\u00ADly soft\u00ADly soft\u00ADly soft\u00ADly "
                  "ex\u00ADtra\u00ADor\u00ADdi\u00ADna\u00ADri\u00ADly|soft\u00AD\n"),
      // Without the character that stands for an object: if there is no object, later
      // releases of the toolkit give it different widths in different layouts.
      textContent("control characters",
                  "a\x01"
                  "b\x07|\x1B[31m\x7F|\x0B\x0C"
                  "cd\uFFFDe\n"),
      {"coloured pieces on backgrounds",
       [](QTextBrowser& browser) {
         insertColoured(browser, "yellow on red ", Qt::yellow, Qt::red);
         insertColoured(browser, QString(70, 'x') + " wraps and is green on blue", Qt::green,
                        Qt::blue);
         insertColoured(browser, QChar(QChar::LineSeparator) + QString("   white   "), Qt::white,
                        Qt::darkGray);
         insertColoured(browser, "\n\nbehind an empty paragraph\n", Qt::cyan, Qt::black);
       }},
      {"a paragraph of many lines",
       [](QTextBrowser& browser) {
         for (int i = 0; i < 120; ++i)
           insertText(browser,
                      QStringLiteral("line %1 of it%2").arg(i).arg(QChar(QChar::LineSeparator)));
       }},
      {"status lines between server text",
       [](QTextBrowser& browser) {
         insertText(browser, "You see a lamp.");
         appendStatus(browser, "<span style=\"color:#BDBDBD\"><i>Connected to host.</i></span>");
         appendStatus(browser, "<i>Another.</i>");
         insertText(browser, "It goes on.");
       }},
      {"a paragraph with margins behind a status line",
       [](QTextBrowser& browser) {
         appendStatus(browser, "<i>Connected.</i>");
         insertHtml(browser, "<p>A paragraph.</p><p>Another.</p>");
         appendStatus(browser, "<i>Closed.</i>");
       }},
      {"a list behind a status line, and one that goes on after it",
       [](QTextBrowser& browser) {
         appendStatus(browser, "<i>Connected.</i>");
         insertHtml(browser, "<ul><li>one<li>two</ul>");
         appendStatus(browser, "<i>Closed.</i>");
         insertText(browser, "on\nand on\n");
       }},
  };
}

/// Examples of the tags that a server may use.
std::vector<Content> markupContents() {
  return {
      htmlContent(
          "links",
          "see <a href=\"http://a.example/b\">a place</a>, <a href=\"mailto:x@y\">somebody</a> "
          "and <a href=\"http://long.example\">a link of so many words that it will have to be "
          "wrapped</a><br>"),
      htmlContent("bold, slanted and struck",
                  "<b>bold</b> <i>slanted</i> <u>under</u> <s>struck</s> <b><i><u>all of "
                  "it</u></i></b> <span style=\"text-decoration:overline\">over</span> "
                  "<big>big</big> <small>small</small> <tt>typed</tt> <code>code</code><br>"),
      htmlContent("lower and raised letters",
                  "H<sub>2</sub>O and x<sup>2<sup>3</sup></sup> and <font "
                  "size=6>big<sub>low</sub></font> text<br><sup>only raised</sup><br>"),
      htmlContent("fonts of many sizes",
                  "<font size=1>one</font> <font size=3>three</font> <font size=7>seven</font> "
                  "<font size=+2 color=red face=serif>serif</font> <span "
                  "style=\"font-size:40px\">forty pixels</span> <span "
                  "style=\"font-size:5pt;background-color:#400\">five points</span> middle<br>"),
      htmlContent("a list",
                  "before<ul><li>one<li>two is so long that it has to be wrapped in the "
                  "page<li>three<br>with a break</ul>behind"),
      htmlContent("a numbered list from nine on",
                  "<ol start=9><li>nine<li>ten<li>eleven</ol><ol start=999><li>many</ol>"),
      htmlContent(
          "lists in lists",
          "<ul><li>one<ul><li>one of one<ol><li>a number<li>another</ol><li>back</ul><li>two"
          "</ul>"),
      htmlContent("a numbered list of changing fonts",
                  "<ol><li><b>bold</b><li><font size=6>big</font><li><span style=\"color:#f00\">red"
                  "</span><li></ol>"),
      htmlContent(
          "lists within other fonts and colours",
          "<font size=6 color=#f80><ul><li>big</ul><ol><li>big</ol></font><b><i><ol><li>bold"
          "</ol></i></b><span style=\"color:#0f0;background-color:#400\"><ul><li>green</ul>"
          "<ol><li>green</ol></span><h1><ul><li>head</ul></h1>"),
      htmlContent("a list from right to left", "<ul><li>שלום<li>עולם one</ul><ol><li>שלום</ol>"),
      htmlContent("terms",
                  "<dl><dt>lamp<dd>gives light, as long as there is oil in it and somebody "
                  "to watch it<dt>rope<dd>holds</dl>"),
      htmlContent("headings",
                  "<h1>One</h1><h2>Two</h2>text<h3>Three of many words to be "
                  "wrapped in a page</h3><h4>Four</h4><h5>Five</h5><h6>Six</h6>"),
      htmlContent(
          "margins between neighbours of many kinds",
          "<p>one</p><h1>head</h1>text<p>two</p><p>three</p><h2>head</h2><h3>head</h3>"
          "<ul><li>item</ul><p>four</p><blockquote>said</blockquote><h1>head</h1><hr><p>five"
          "</p><pre>kept</pre>text<dl><dt>term<dd>told</dl><h4>head</h4>"),
      htmlContent("rules",
                  "above<hr>between<hr><hr><p>a paragraph</p><hr><center><hr>in the "
                  "middle</center>"),
      htmlContent("a rule behind text and text behind it",
                  "above<hr>in a paragraph of its own, which wraps<br>more than once"),
      {"text that goes on in the paragraph of a rule",
       [](QTextBrowser& browser) {
         appendStatus(browser, "Connected.<hr>");
         insertText(browser, "These words go on where the rule is, for more than a line.");
       }},
      htmlContent("items in letters of other fonts",
                  "<ol><li>عربي<li>漢字<li>x<sub>2</sub><li><font size=7>big</font> small<li>"
                  "<small>small</small> <font size=7>big</font></ol><ul><li>漢字<li>x<sup>2</sup>"
                  "<li>عربي</ul>"),
      htmlContent("items from right to left, wider than the page",
                  "<ol start=8><li>שלום<li>שלום --------------------------------------------------"
                  "--------------------------------<li>one</ol>"),
      htmlContent("quotations",
                  "he said<blockquote>this, and more of it than fits into one line "
                  "<blockquote>and that</blockquote>again</blockquote>so"),
      htmlContent("text kept as it is",
                  "<pre>  x   y\n\tz\n                                                           "
                  "                               far right\n</pre>behind"),
      htmlContent("centred",
                  "<center>in the middle of it</center><center>and again, so long that "
                  "it is wrapped to a line more than one<br>short</center>"),
      htmlContent("to the right",
                  "<p align=right>at the right</p><div align=right>and again, so "
                  "long that it is wrapped to a line more<br>short</div>"),
      htmlContent("justified",
                  "<p align=justify>these words are to fill each line of the page from "
                  "its left to its right but for the last<br>and the one before a "
                  "break</p><h2 align=center>middle</h2>"),
      htmlContent("lines that must not break",
                  "<nobr>these words are to stay in one line however narrow the page may come to "
                  "be</nobr> and these need not, of course, not at all<br>"),
      htmlContent("aligned beside a line wider than the page",
                  "<pre>------------------------------------------------------------------------"
                  "-----</pre><center>middle</center><p align=right>right</p><hr>"
                  "<p align=right>שלום</p>"),
      htmlContent("paragraphs without text",
                  "<p></p><ul><li></ul><h1></h1><p>&nbsp;</p><pre>\n\n</pre>"
                  "<blockquote><br></blockquote>"),
  };
}

}  // namespace

std::vector<Content> allContents() {
  std::vector<Content> all = textContents();
  for (Content& content : markupContents())
    all.push_back(std::move(content));
  const std::vector<Content> parts = all;
  all.push_back({"something of everything", [parts](QTextBrowser& browser) {
                   for (const Content& content : parts)
                     content.write(browser);
                 }});
  return all;
}

std::vector<FontRow> fonts() {
  static const bool registered = [] {
    for (const char* face : {"UbuntuMono-R", "Ubuntu-R", "Ubuntu-B", "Ubuntu-RI", "Ubuntu-BI"})
      QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/%1.ttf").arg(QLatin1String(face)));
    return true;
  }();
  Q_UNUSED(registered)
  return {{"in the font of the pane", QFont("Ubuntu Mono", 12, 1)},
          {"in small proportional letters", QFont("Ubuntu", 7)},
          {"in proportional letters of another family", QFont("DejaVu Serif", 11)},
          {"in large letters", QFont("Ubuntu Mono", 31)}};
}

}  // namespace layout_contents
