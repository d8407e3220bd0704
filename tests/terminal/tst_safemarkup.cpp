#include <QRandomGenerator>
#include <QTest>

#include "MarkupFault.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"
#include "terminal/markup/SafeMarkup.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

QString written(const QString& html) {
  return safeMarkup(html).html();
}

template <std::size_t size>
QString randomMarkup(QRandomGenerator& random, const std::array<QString, size>& pieces,
                     quint32 longest) {
  QString made;
  for (quint32 count = random.bounded(longest); count > 0; --count)
    made += pieces[random.bounded(static_cast<quint32>(size))];
  return made;
}

}  // namespace

class TestSafeMarkup : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void passesUnchanged_data();
  void passesUnchanged();
  void isWrittenAnew_data();
  void isWrittenAnew();
  void everyTagAllowedWithoutAttributesPassesInEitherCase();
  void blocksNestThirtyTwoDeepAndNoDeeper_data();
  void blocksNestThirtyTwoDeepAndNoDeeper();
  void inlineTagsNestOneHundredTwentyEightDeepAndNoDeeper_data();
  void inlineTagsNestOneHundredTwentyEightDeepAndNoDeeper();
  void aSpanThatNestsTooDeepTakesThePlaceOfTheOneAround();
  void aLongStyleIsNotWrittenAgainAndAgain_data();
  void aLongStyleIsNotWrittenAgainAndAgain();
  void theDepthOfInlineTagsIsThatOfTheirBlock();
  void whatTheClientWritesIsNeverTouched();
  void randomMarkupComesOutSafeAndStays();
  void theTextBetweenAllowedTagsIsUnchanged();
  void aPieceBeginsWithWhatIsOpen_data();
  void aPieceBeginsWithWhatIsOpen();
  void knowsWhatIsCertain_data();
  void knowsWhatIsCertain();
  void eachPieceKnowsItsOwn();
  void takesTimeInProportionToTheText_data();
  void takesTimeInProportionToTheText();
};

void TestSafeMarkup::passesUnchanged_data() {
  QTest::addColumn<QString>("html");
  const auto row = [](const char* name, const char* html) {
    QTest::newRow(name) << QString::fromUtf8(html);
  };
  row("an empty read", "");
  row("plain text", "You see a lamp.");
  row("the reset colour", R"(<span style="color:#BDBDBD;background-color:#000000">You)");
  row("a background colour", R"(<span style="background-color:#0000ff">You)");
  row("a colour given by its name", R"(<span style="color:red">You)");
  row("a colour given by its parts", R"-(<span style="color:rgb(255, 0, 10%)">You)-");
  row("a line break", "one<br>\ntwo<br>\n");
  row("a link", R"(<a href="http://a.b/c?d=1&e#f">http://a.b/c?d=1&e#f</a>)");
  row("a link that ran into a blank's entity",
      R"(<a href="http://a.b/c&#32">http://a.b/c&#32</a>;now)");
  row("a mail link", R"(<a href="mailto:a@b">a</a>)");
  row("all declarations at once",
      R"(<span style="color:#fff;background-color:#000;font-weight:bold;font-style:italic;)"
      R"(text-decoration:underline line-through">)");
  row("a font's colour, face and size",
      R"(<font color="red" face="Courier New,mono" size="5">x</font>)");
  row("a font's size as a step up", R"(<font size="+2">x</font>)");
  row("a font's size as a step down", R"(<font size="-1">x</font>)");
  row("every alignment", R"(<p align="left">a</p><p align="right">b</p><div align="center">c</div>)"
                         R"(<h1 align="justify">d</h1><h6 align="right">e</h6>)");
  row("a list that starts at a number", R"(<ol start="5"><li>five</ol>)");
  row("a list that starts below zero", R"(<ol start="-5"><li>five</ol>)");
  row("a list of terms", "<dl><dt>term<dd>what it is</dl>");
  row("a size in points", R"(<span style="font-size:20pt">x</span>)");
  row("a size in parts of a point", R"(<span style="font-size:10.5pt">x</span>)");
  for (const char* word : {"small", "medium", "large", "x-large", "xx-large"})
    row(word, qPrintable(QStringLiteral("<span style=\"font-size:%1\">x</span>").arg(word)));
  row("the largest size", R"(<span style="font-size:200px">x</span>)");
  row("the smallest size", R"(<span style="font-size:1pt">x</span>)");
  row("letters that lean no more", R"(<span style="font-style:normal">x</span>)");
  row("entities", "&lt;b&gt; &amp; &#32;&nbsp; &#0; &#x110000; &#xD800; &#99999999999; &bogus; &");
  row("a closing bracket that ends nothing", "1 > 0");
  row("text in other scripts", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  row("lists", "<ul><li>one</li><li>two</li></ul><ol><li>one<li>two</ol>");
}

void TestSafeMarkup::passesUnchanged() {
  QFETCH(const QString, html);
  QCOMPARE(written(html), html);
}

void TestSafeMarkup::isWrittenAnew_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<QString>("safe");
  const auto row = [](const char* name, const char* html, const char* safe) {
    QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(safe);
  };
  // Tags.
  row("names are told in any case", "<B>x</B>", "<b>x</b>");
  row("attributes are told in any case", "<FONT COLOR=Red>", R"(<font color="Red">)");
  row("a value needs no quotes", "<font color=#ff0000>", R"(<font color="#ff0000">)");
  row("a value may have single quotes", "<font color='red'>", R"(<font color="red">)");
  row("blanks may stand around the equals sign", "<font color = red>", R"(<font color="red">)");
  row("a name may be quoted", R"(<"b">x<'table'>)", "<b>x");
  row("a tag that a slash ends is closed at once", "<b/>x", "<b></b>x");
  row("a line break with a slash is a line break", "<br/>x<br />y", "<br>x<br>y");
  row("a line break has no end tag", "</br>x</hr>", "x");
  row("attributes end at a slash", "<font / color=red>x", "<font></font>x");
  row("a tag inside a tag is part of it", R"(<font <span style="color:red">x)", "<font>x");
  row("a line break of the server's inside a tag ends it", "<font<br>color=red>x",
      "<font>color=red>x");
  row("a closing bracket in a quoted value ends nothing", R"(<p title="a>b">x)", "<p>x");
  row("a tag at the end of a read ends there", "x<b", "x<b>");
  row("a value at the end of a read ends there", R"(<a href="http://x)", R"(<a href="http://x">)");
  row("an unknown tag at the end of a read vanishes", "x<table width=", "x");
  // Brackets that begin nothing.
  row("a bracket at the end is text", "x<", "x&lt;");
  row("a bracket before a closing one is text", "x<>y", "x&lt;>y");
  row("a bracket before an equals sign is text", "x<=y", "x&lt;=y");
  row("the first of two brackets is text", "<<b>x", "&lt;<b>x");
  row("a bracket before a blank is text", "< b>x< /b>", "&lt; b>x&lt; /b>");
  row("a bracket before a hard blank is text",
      "<\xC2\xA0"
      "b>x",
      "&lt;\xC2\xA0"
      "b>x");
  row("two brackets and a blank are text", "a << b<br>\nz", "a &lt;&lt; b<br>\nz");
  row("a tag that the end of its line cuts is text", "a <b<br>\nz", "a &lt;b<br>\nz");
  row("a tag is text whose end stands in the next line", "a <font<br>\ncolor=red>x",
      "a &lt;font<br>\ncolor=red>x");
  row("an end tag that the end of its line cuts is text", "<b>a</b<br>\nz", "<b>a&lt;/b<br>\nz");
  row("a value that the end of its line cuts is text", "<a href=\"http://x<br>\ny\">z",
      "&lt;a href=\"http://x<br>\ny\">z");
  row("a declaration that the end of its line cuts is text", "a<!x<br>\nz>", "a&lt;!x<br>\nz>");
  row("a tag that ends with its line is one", "<b><br>\nz", "<b><br>\nz");
  row("a tag stands behind a bracket that begins none", "1 < 2 <i>x</i>", "1 &lt; 2 <i>x</i>");
  row("blanks behind a bracket stay with it", "<  <b>x", "&lt;  <b>x");
  // What is hidden.
  row("a script's text is hidden", "a<script>a<b>b</script>c", "ac");
  row("a style sheet's text is hidden", "a<style>p{}</style><b>x", "a<b>x");
  row("a title's text is hidden", "a<title>x</title>b", "ab");
  row("what is hidden goes over lines", "a<style><br>\np{}<br>\n</style>b", "ab");
  row("what is hidden is told in any case", "a<TITLE>x</Title>b", "ab");
  row("an attribute keeps nothing from being hidden", "a<style type='text/css'>x</style >b", "ab");
  row("what is hidden ends at the first end tag", "<title>a</title>b</title>c", "bc");
  row("each is ended by its own", "<title>a</style>b</title>c", "c");
  row("without an end tag nothing is hidden", "a<title>x <b>y", "ax <b>y");
  row("the end tag of another hides nothing", "a<title>x</script>y", "axy");
  row("an end tag alone hides nothing", "a</title>x<title>y</title>", "ax");
  row("an empty element hides nothing", "a<script/>x</script>", "ax");
  // What is dropped.
  row("unknown tags leave their text", "<blink>x</blink> <foo bar=baz>y", "x y");
  row("a picture leaves nothing", "<img src=file:///etc/passwd width=99999999>", "");
  row("head and body leave their text",
      "<html><head><meta name=qrichtext content=1></head>"
      "<body bgcolor=red>x</body></html>",
      "x");
  row("a style sheet by name is dropped", "<link rel=stylesheet href='file:///x.css'>x", "x");
  row("form fields are dropped", "<input value=x><textarea>y</textarea>", "y");
  row("a comment is dropped", "a<!-- <b> > -->b", "ab");
  row("a comment goes over lines", "a<!-- x<br>\ny -->b", "ab");
  row("a comment without an end is text", "a<!-- <b>b", "a&lt;!-- <b>b");
  row("a comment's dashes are not its end", "a<!-->b-->c", "ac");
  row("a declaration is dropped", "a<!DOCTYPE html>b<?xml version='1'?>c", "abc");
  row("a closing tag without a name is dropped", "a</>b</ b>c", "abc");
  row("no fragment marker can be made", "<font face='<!--StartFragment-->'>x", "<font>x");
  // Tables.
  row("a table stays readable",
      "a<table border=1><tr><th>h<th>i</tr><tr><td colspan=9999>x</td><td>y</td></tr></table>b",
      "a<br>&nbsp;h&nbsp;i<br>&nbsp;x&nbsp;y<br>b");
  // Attributes.
  row("an unknown attribute is dropped", "<p onclick=x width=9 style='color:red'>", "<p>");
  row("a size beyond those of fonts is dropped", "<font size=8 color=red>",
      R"(<font color="red">)");
  row("a size of none is dropped", "<font size=0>", "<font>");
  row("a size of two digits is dropped", "<font size=77>", "<font>");
  row("a step of two signs is dropped", "<font size=+-2>", "<font>");
  row("an alignment is told in any case", "<P ALIGN=' Right '>x", R"(<p align="right">x)");
  row("an unknown alignment is dropped", "<p align=top>x", "<p>x");
  row("an alignment without a value is dropped", "<p align=''>x", "<p>x");
  row("two alignments are none", "<p align='left right'>x", "<p>x");
  row("a tag without alignment gets none", "<ul align=left><li align=right>x</ul>",
      "<ul><li>x</ul>");
  row("a start that is no number is dropped", "<ol start=five><li>x</ol>", "<ol><li>x</ol>");
  row("a start of seven digits is dropped", "<ol start=1000000><li>x</ol>", "<ol><li>x</ol>");
  row("a list without numbers starts nowhere", "<ul start=5><li>x</ul>", "<ul><li>x</ul>");
  row("an attribute needs a value", "<font color face=>x", "<font>x");
  row("a colour with anything else in it is dropped", "<font color='red;x'>", "<font>");
  row("a colour of endless digits is dropped", "<span style='color:rgb(99999999999,0,0)'>x",
      "<span>x");
  row("a face with a quote in it is dropped", "<font face='a\"b'>", "<font>");
  row("a rule's attributes are dropped", "<hr width=99999999 size=9999>", "<hr>");
  // Styles.
  row("other declarations are dropped",
      "<span style='font-size:9999pt;color:red;line-height:99999999%;margin-left:9px'>",
      R"(<span style="color:red">)");
  row("a size beyond the largest is dropped", "<span style='font-size:201pt'>", "<span>");
  row("a size below the smallest is dropped", "<span style='font-size:0.9px'>", "<span>");
  row("a size of endless digits is dropped", "<span style='font-size:0000000000012pt'>", "<span>");
  row("a size that turns negative is dropped", "<span style='font-size:-5pt'>", "<span>");
  row("a size in proportion is dropped", "<span style='font-size:900%'>", "<span>");
  row("a size without a unit is dropped", "<span style='font-size:12'>", "<span>");
  row("a size is told in any case", "<span style='Font-Size: 12PT '>",
      R"(<span style="font-size:12pt">)");
  row("declarations are trimmed", "<span style=' Color : red ; ; '>",
      R"(<span style="color:red">)");
  row("a word of a declaration is written once",
      "<span style='text-decoration: underline  Underline overline underline'>",
      R"(<span style="text-decoration:underline overline">)");
  row("a colour of endless blanks is dropped", "<span style='color:rgb(    1,2,3)'>x", "<span>x");
  row("a declaration naming a file is dropped",
      "<span style='background-color:url(file:///etc/passwd);color:url(x)'>", "<span>");
  row("a short form naming a file is dropped", "<span style='background:url(x)'>", "<span>");
  row("escapes do not hide a declaration",
      R"(<span style="color:red&#59;font-size:999pt;c\6flor:red;color:r/**/ed">)", "<span>");
  row("a weight is one of the known ones", "<span style='font-weight:123456789'>", "<span>");
  row("a style without declarations is dropped", "<span style='x'>", "<span>");
  // Links.
  row("a link to a file is no link", "<a href=file:///etc/passwd>x</a>", "x</a>");
  row("a link to a script is no link", "<a href=' javascript:x'>x</a>", "x</a>");
  row("a link without a scheme is no link", "<a href=//host/x>x</a>", "x</a>");
  row("an anchor's name is dropped", "<a name=x>x</a>", "x</a>");
  row("a scheme is told in any case", "<a href=HTTPS://x>", R"(<a href="https://x">)");
  row("a scheme with a foreign letter is written plainly", "<a href='http\xC5\xBF://x'>",
      R"(<a href="https://x">)");
  row("blanks and controls before a scheme are dropped", "<a href=' \x01\x0B\n http://x'>",
      R"(<a href="http://x">)");
  row("blanks do not hide another scheme", "<a href='\x01 file:///x'>", "");
  row("entities do not hide another scheme", R"(<a href="&#102;ile:///x">)", "");
  row("a scheme broken by an entity is none", R"(<a href="java&#10;script:http:">)", "");
  row("quotes and brackets in a link are escaped", R"(<a href='http://"><b>'>x)",
      R"(<a href="http://&quot;&gt;&lt;b&gt;">x)");
  row("an ampersand in single quotes is no entity", "<a href='http://x?a&amp;b'>",
      R"(<a href="http://x?a&amp;amp;b">)");
  row("a quote behind a backslash ends no single-quoted value", R"(<a href='http://x\'y'>z)",
      R"(<a href="http://x\'y">z)");
  // Blocks.
  row("an end tag of a block that is not open is dropped", "</div>x</ul>", "x");
}

void TestSafeMarkup::isWrittenAnew() {
  QFETCH(const QString, html);
  QFETCH(const QString, safe);
  QCOMPARE(written(html), safe);
  QCOMPARE(written(safe), safe);
  QCOMPARE(faultOf(safe), QString());
}

void TestSafeMarkup::everyTagAllowedWithoutAttributesPassesInEitherCase() {
  for (const QString& name : allowedNames) {
    if (name == "a")
      continue;
    const QString start = '<' + name + '>';
    const QString end = name == "br" || name == "hr" ? QString() : "</" + name + '>';
    QCOMPARE(written(start + 'x' + end), start + 'x' + end);
    QCOMPARE(written('<' + name.toUpper() + ">x" + end.toUpper()), start + 'x' + end);
  }
}

void TestSafeMarkup::blocksNestThirtyTwoDeepAndNoDeeper_data() {
  QTest::addColumn<QString>("name");
  for (const QString& name : blockNames)
    QTest::addRow("%s", qPrintable(name)) << name;
}

void TestSafeMarkup::blocksNestThirtyTwoDeepAndNoDeeper() {
  QFETCH(const QString, name);
  const QString start = '<' + name + '>';
  const QString end = "</" + name + '>';
  const QString most = start.repeated(32) + 'x' + end.repeated(32);
  QCOMPARE(written(most), most);
  QCOMPARE(written(start.repeated(40) + 'x' + end.repeated(40)), most);
  // End tags of blocks that were left out are counted, so later blocks are complete.
  QCOMPARE(written(start.repeated(40) + end.repeated(40) + most),
           start.repeated(32) + end.repeated(32) + most);
  const QString one = start + 'x' + end;
  QCOMPARE(written(one.repeated(100)), one.repeated(100));
  // An outer end tag closes all blocks inside, also those that were left out.
  QCOMPARE(written("<ol>" + QString("<ul>").repeated(40) + "</ol>" + one),
           "<ol>" + QString("<ul>").repeated(31) + "</ol>" + one);
}

void TestSafeMarkup::inlineTagsNestOneHundredTwentyEightDeepAndNoDeeper_data() {
  QTest::addColumn<QString>("name");
  for (const QString& name :
       allowedNames - blockNames - QSet<QString>{"a", "br", "hr", "p", "li", "dt", "dd"})
    QTest::addRow("%s", qPrintable(name)) << name;
}

void TestSafeMarkup::inlineTagsNestOneHundredTwentyEightDeepAndNoDeeper() {
  QFETCH(const QString, name);
  const QString start = '<' + name + '>';
  const QString end = "</" + name + '>';
  const QString most = start.repeated(128) + 'x' + end.repeated(128);
  QCOMPARE(written(most), most);
  QCOMPARE(written(start.repeated(200) + 'x' + end.repeated(200)), most);
  const QString one = start + 'x' + end;
  QCOMPARE(written(one.repeated(300)), one.repeated(300));
  // End tags of tags that were left out are counted, so later tags are complete.
  QCOMPARE(written(start.repeated(200) + end.repeated(200) + most),
           start.repeated(128) + end.repeated(128) + most);
}

void TestSafeMarkup::aSpanThatNestsTooDeepTakesThePlaceOfTheOneAround() {
  const QString red = R"(<span style="color:#ff0000">)";
  const QString onBlue = R"(<span style="background-color:#0000ff">)";
  const QString redOnBlue = R"(<span style="color:#ff0000;background-color:#0000ff">)";
  const QString most = red.repeated(128);
  QCOMPARE(written(most + "x" + onBlue + "y"), most + "x</span>" + redOnBlue + "y");
  QCOMPARE(written(most + onBlue.repeated(1000) + red + "y<br>"),
           most + "</span>" + redOnBlue + "y<br>");
  QCOMPARE(written(most + onBlue), most);
  QCOMPARE(written(most + onBlue + "</span>y"), most + "</span>y");
  // Links are kept at any depth.
  const QString link = R"(<a href="http://a.b">a.b</a>)";
  QCOMPARE(written(most + link + onBlue + link + "y"),
           most + link + "</span>" + redOnBlue + link + "y");
  const QString unclosed = "<a href=\"http://a.b\">x";
  QCOMPARE(written(most + unclosed.repeated(3)), most + unclosed + "xx");
  QCOMPARE(written(unclosed.repeated(131)), unclosed.repeated(129) + "xx");
  // Inside other tags there is no span to replace, so only one more span is kept.
  const QString bold = QString("<b>").repeated(128);
  QCOMPARE(written(bold + red + "x" + onBlue + "y"), bold + red + "x</span>" + redOnBlue + "y");
}

void TestSafeMarkup::aLongStyleIsNotWrittenAgainAndAgain_data() {
  QTest::addColumn<QString>("declaration");
  QTest::newRow("a decoration of many words")
      << "text-decoration:" + QString("underline ").repeated(1000);
  QTest::newRow("a colour with many blanks") << "color:rgb(" + QString(10'000, ' ') + "1,2,3)";
}

void TestSafeMarkup::aLongStyleIsNotWrittenAgainAndAgain() {
  QFETCH(const QString, declaration);
  const QString html = QString("<b>").repeated(128) + "<span style='" + declaration + "'>x" +
                       QString("<span style='font-style:italic'>x").repeated(1000);
  const QString safe = written(html);
  QVERIFY2(safe.size() < 4 * html.size(), qPrintable(QString::number(safe.size())));
}

void TestSafeMarkup::theDepthOfInlineTagsIsThatOfTheirBlock() {
  const QString unclosed = "<div><b>x</div>";
  QCOMPARE(written(unclosed.repeated(300)), unclosed.repeated(300));
}

void TestSafeMarkup::whatTheClientWritesIsNeverTouched() {
  const std::array<QString, 12> pieces{R"(<span style="color:#BDBDBD;background-color:#000000">)",
                                       R"(<span style="background-color:#0000ff">)",
                                       R"(<span style="color:#660000">)",
                                       "<br>\n",
                                       "&#32;",
                                       "&nbsp;",
                                       "&lt;",
                                       "&gt;",
                                       "&#32;&nbsp;&#32;&nbsp;",
                                       R"(<a href="http://a.b/c&#32">http://a.b/c&#32</a>)",
                                       "&",
                                       "text"};
  QRandomGenerator random(1);
  for (int run = 0; run < 10000; ++run) {
    const QString html = randomMarkup(random, pieces, 40);
    QCOMPARE(written(html), html);
  }
}

void TestSafeMarkup::randomMarkupComesOutSafeAndStays() {
  const std::array<QString, 96> pieces{"<",
                                       "<",
                                       "<",
                                       "<",
                                       ">",
                                       ">",
                                       ">",
                                       "/",
                                       "</",
                                       "/>",
                                       "\"",
                                       "\"",
                                       "'",
                                       "'",
                                       "=",
                                       "=",
                                       " ",
                                       " ",
                                       "\t",
                                       "\n",
                                       "&",
                                       ";",
                                       ":",
                                       "!",
                                       "?",
                                       "-",
                                       "--",
                                       "<!--",
                                       "-->",
                                       "\\",
                                       "#",
                                       "(",
                                       ")",
                                       ",",
                                       "\x01",
                                       QString(QChar(0)),
                                       QString(QChar(0x2029)),
                                       QString(QChar(0xA0)),
                                       QString(QChar(0xD800)),
                                       QString(QChar(0xDC00)),
                                       QString(QChar(0xFFFF)),
                                       QString(QChar(0x130)),
                                       QString(QChar(0x212A)),
                                       "b",
                                       "B",
                                       "i",
                                       "br",
                                       "hr",
                                       "p",
                                       "li",
                                       "ul",
                                       "<ul>",
                                       "<OL>",
                                       "</ul>",
                                       "<blockquote>",
                                       "<h1>",
                                       "</h1>",
                                       "div",
                                       "pre",
                                       "<table>",
                                       "<tr>",
                                       "<td>",
                                       "</table>",
                                       "img",
                                       "script",
                                       "<style>",
                                       "</style>",
                                       "<title>",
                                       "textarea",
                                       "<a ",
                                       "href=",
                                       "HREF=\"",
                                       "http:",
                                       "https:",
                                       "mailto:",
                                       "file:",
                                       "javascript:",
                                       "//x",
                                       "<span ",
                                       "style=",
                                       "style=\"",
                                       "color:",
                                       "background-color:",
                                       "red",
                                       "rgb(1,2,3)",
                                       "url(",
                                       "font-size:9pt",
                                       "font-weight:",
                                       "bold",
                                       "<font ",
                                       "color=",
                                       "face=",
                                       "size=",
                                       "&lt;",
                                       "&#60;",
                                       "&quot;"};
  QRandomGenerator random(20);
  for (int run = 0; run < 150000; ++run) {
    const QString html = randomMarkup(random, pieces, 50);
    const QString safe = written(html);
    const QString fault = faultOf(safe);
    QVERIFY2(fault.isEmpty(), qPrintable(fault + "\nin " + safe + "\nfrom " + html));
    QVERIFY2(written(safe) == safe, qPrintable(safe + "\nfrom " + html));
  }
}

void TestSafeMarkup::theTextBetweenAllowedTagsIsUnchanged() {
  const std::array<QString, 14> pieces{
      "<b>",   "</b>",          "<i>",     "</I>",  "<p>",  "<ul>",   "<li>",
      "</ul>", "<font size=7>", "</font>", "a > b", "&lt;", "&#99;x", "\n "};
  static const QRegularExpression tags("<[^>]*>");
  QRandomGenerator random(3);
  for (int run = 0; run < 10000; ++run) {
    const QString html = randomMarkup(random, pieces, 200);
    QCOMPARE(written(html).remove(tags), QString(html).remove(tags));
  }
}

void TestSafeMarkup::aPieceBeginsWithWhatIsOpen_data() {
  QTest::addColumn<QString>("before");
  QTest::addColumn<QString>("open");
  QTest::newRow("a paragraph") << R"(<p align="right">x)"
                               << R"(<p align="right">)";
  QTest::newRow("no paragraph that has ended") << R"(<p align="right">x</p>)"
                                               << "";
  QTest::newRow("a paragraph that another's end tag leaves open") << "<p>x</dt>"
                                                                  << "<p>";
  QTest::newRow("no paragraph that a block has ended") << "<p>x<ul></ul>"
                                                       << "";
  QTest::newRow("a list and its item") << "<ul><li>x"
                                       << "<ul><li>";
  QTest::newRow("a look") << "<b><i>x</i>"
                          << "<b>";
  QTest::newRow("a look around a block") << "<b><ul><i>x"
                                         << "<b><ul><i>";
  QTest::newRow("a colour") << R"(<span style="color:#FF0000">x)"
                            << R"(<span style="color:#FF0000">)";
}

void TestSafeMarkup::aPieceBeginsWithWhatIsOpen() {
  QFETCH(const QString, before);
  QFETCH(const QString, open);
  const QString word(200, u'w');
  QStringList pieces;
  for (const SafeHtml& piece : safeMarkupPieces(before + word, 60))
    pieces << piece.html();
  QVERIFY(pieces.size() > 1);
  QVERIFY2(pieces.at(1).startsWith(open + u'w'), qPrintable(pieces.at(1)));
  // The pieces together contain the word exactly once.
  QCOMPARE(pieces.join(QString()).count(u'w'), 200);
}

void TestSafeMarkup::knowsWhatIsCertain_data() {
  enum class Shown { Nothing, Perhaps, Something };
  QTest::addColumn<QString>("html");
  QTest::addColumn<bool>("showsSomething");
  QTest::addColumn<bool>("isEmpty");
  QTest::addColumn<bool>("isInlineOnly");
  QTest::addColumn<QList<qsizetype>>("lines");
  const auto row = [](const char* name, const QString& html, Shown shown, bool isInlineOnly,
                      const QList<qsizetype>& lines) {
    QTest::newRow(name) << html << (shown == Shown::Something) << (shown == Shown::Nothing)
                        << isInlineOnly << lines;
  };
  row("nothing", "", Shown::Nothing, true, {0});
  row("text", "lamp", Shown::Something, true, {4});
  row("tags are not shown", "<b><i></i></b>", Shown::Nothing, true, {0});
  row("text inside tags is", "<span style=\"color:#ff0000\">x</span>", Shown::Something, true, {1});
  row("line breaks", "ab<br>\nc<br>\n", Shown::Something, true, {2, 1, 0});
  row("a line break alone is shown", "<br>", Shown::Something, true, {0, 0});
  row("a row of a table is a line", "<table><tr><td>some text</td></tr></table>", Shown::Something,
      true, {0, 4, 0});
  row("blanks may collapse", "a  b \t\u3000", Shown::Something, true, {2});
  row("blanks alone may not be shown", " ", Shown::Perhaps, true, {0});
  row("an entity is one character at most", "&thetasym;ab", Shown::Something, true, {2});
  row("or none", "&#0;", Shown::Perhaps, true, {0});
  row("an entity goes on behind a tag that is dropped", "&#<x>1;a", Shown::Perhaps, false, {0});
  row("one that may end a paragraph", "abcdefghijk&#8233;", Shown::Something, false, {8});
  row("a mark that does", "ab\u2029", Shown::Something, false, {2});
  row("a mark of a frame", "ab\uFDD0", Shown::Something, false, {3});
  row("a paragraph works on behind its text", "<p>ab", Shown::Something, false, {2});
  row("so does its end", "ab</p>", Shown::Something, false, {2});
  row("so does an alignment", "<center>a</center>", Shown::Something, false, {1});
  row("a rule", "<hr>", Shown::Nothing, false, {0});
}

void TestSafeMarkup::knowsWhatIsCertain() {
  QFETCH(const QString, html);
  const MarkupFacts facts = safeMarkup(html).facts();
  QTEST(facts.showsSomething(), "showsSomething");
  QTEST(!facts.hasText && !facts.showsSomething(), "isEmpty");
  QTEST(facts.isInlineOnly, "isInlineOnly");
  QTEST(QList<qsizetype>(facts.lines.begin(), facts.lines.end()), "lines");
}

void TestSafeMarkup::eachPieceKnowsItsOwn() {
  const QString lines = "word<br>\n";
  qsizetype breaks = 0;
  for (const SafeHtml& piece :
       safeMarkupPieces(lines.repeated(100) + "<p>" + lines.repeated(100), 90)) {
    const MarkupFacts& facts = piece.facts();
    QCOMPARE(static_cast<qsizetype>(facts.lines.size()), piece.html().count("<br>") + 1);
    QCOMPARE(facts.isInlineOnly, !piece.html().contains("<p>"));
    breaks += piece.html().count("<br>");
  }
  QCOMPARE(breaks, 200);
}

void TestSafeMarkup::takesTimeInProportionToTheText_data() {
  QTest::addColumn<QString>("piece");
  for (const char* piece : {"<title>",
                            "<style></style",
                            "<title></style>",
                            "<!-- x",
                            "<b x='<br>\n",
                            "<b \"'<br>\n",
                            "<b<br>\n",
                            "<!x<br>\n",
                            "<",
                            "< ",
                            "<b>",
                            "<ul>",
                            "<ul></ol>",
                            "</ul>",
                            "<!--",
                            "<!",
                            "</",
                            "<x",
                            "<x a=b ",
                            "<x\" a=\"",
                            "<\"",
                            "<''",
                            "<b x='",
                            "<b c=d ",
                            "<a href=http://",
                            "<a href='http://\"&<>",
                            "<span style=\"color:red;",
                            "<font color=rgb(",
                            "<span style='color:rgb( 1, ",
                            "<table><tr><td>",
                            "/",
                            "<b "})
    QTest::addRow("%s", piece) << QString(piece);
}

void TestSafeMarkup::takesTimeInProportionToTheText() {
  QFETCH(const QString, piece);
  // A megabyte, which would take hours if the time were quadratic.
  const QString html = piece.repeated(1000000 / piece.size());
  // A tag without an end lasts until the end of the text; with a line end it is text.
  for (const char* end : {"", "<br>\n", ">\"<br>\n", "'><br>\n"}) {
    ProcessorClock timer;
    timer.start();
    const QString safe = written(html + end);
    QVERIFY2(timer.elapsed() < 10000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(faultOf(safe), QString());
  }
}

KELMORA_TEST_MAIN(TestSafeMarkup)
#include "tst_safemarkup.moc"
