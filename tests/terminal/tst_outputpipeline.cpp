#include <QTest>

#include "PipelineSupport.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

const QByteArray plainTab = "&nbsp;&nbsp;&nbsp;&nbsp;";
const QByteArray shownTab = "&#32;&nbsp;&#32;&nbsp;";

}  // namespace

class TstOutputPipeline : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void becomesTextOrHtml_data();
  void becomesTextOrHtml();
  void whatFollowsAnOpenTagIsHtml();
  void aStoredColourOfAnyTextIsHtml();
  void aLongReadOfHtmlIsInPieces();
  void beforeTheColoursAreKnownAReadIsHtml();
  void ordinaryBytesStayAsTheyAre_data();
  void ordinaryBytesStayAsTheyAre();
  void specialBytes_data();
  void specialBytes();
  void shows_data();
  void shows();
  void handsOverLines_data();
  void handsOverLines();
  void theOrderOfTheSteps();
  void aReadOfNothingReopensItsSpanAndIsOneEmptyLine();
  void eachReadReopensTheCurrentSpan();
  void aPaletteColourIsReopenedAsBareText();
  void aTagStaysOpenAcrossReads();
  void tagsCountOnlyWhileHtmlIsParsed();
  void beepsOnceForARead();
  void theVitalsSeeALineUpToItsNul();
  void whatIsCutInTwo_data();
  void whatIsCutInTwo();
};

void TstOutputPipeline::ordinaryBytesStayAsTheyAre_data() {
  QTest::addColumn<char>("byte");
  for (int byte = 0; byte < 256; ++byte)
    if (!QByteArray("\xFF\a\t\n\r\x1B <>").contains(static_cast<char>(byte)))
      QTest::addRow("byte 0x%02x stays", static_cast<unsigned>(byte)) << static_cast<char>(byte);
}

void TstOutputPipeline::ordinaryBytesStayAsTheyAre() {
  QFETCH(char, byte);
  const QByteArray data = QByteArray("a") + byte + 'b';
  for (const PipelineOptions& options : {plainText, markup}) {
    Client client;
    client.read(data, options);
    QCOMPARE(client.shown(), client.shownOf(QString::fromUtf8(data).toUtf8()));
    QCOMPARE(client.host.lines(), QList<QByteArray>{data});
    client.read("<" + data, options);
    const QByteArray bracket = options.parseHtml ? "<" : "&lt;";
    QCOMPARE(client.shown(), client.shownOf(bracket + QString::fromUtf8(data).toUtf8()));
    QCOMPARE(client.host.lines(), QList<QByteArray>{"<" + data});
  }
}

void TstOutputPipeline::specialBytes_data() {
  QTest::addColumn<QByteArray>("data");
  QTest::addColumn<QByteArray>("asText");
  QTest::addColumn<QByteArray>("asMarkup");
  QTest::addColumn<QByteArray>("insideTag");
  QTest::addColumn<QList<QByteArray>>("lines");
  const auto row = [](const char* name, const QByteArray& data, const QByteArray& asText,
                      const QByteArray& asMarkup, const QByteArray& insideTag,
                      const QList<QByteArray>& lines) {
    QTest::newRow(name) << data << asText << asMarkup << insideTag << lines;
  };
  row("a telnet command takes two more bytes along",
      "a\xFF\xFB\x01"
      "b",
      "ab", "ab", "ab", {"ab"});
  row("a telnet command takes whatever follows", "a\xFF\xFF\n\nb", "a<br>\nb", "a<br>\nb",
      "a<br>\nb", {"a", "b"});
  row("a telnet command near the end ends the read", "a\xFF\xFB", "a", "a", "a", {"a"});
  row("a telnet command at the very end ends the read", "a\xFF", "a", "a", "a", {"a"});
  row("a bell leaves no trace", "a\ab", "ab", "ab", "ab", {"ab"});
  row("a tab is wide, and HTML in the plain line", "a\tb", "a" + shownTab + "b",
      "a" + shownTab + "b", "a" + plainTab + "b", {"a" + plainTab + "b"});
  row("a line feed breaks the line", "a\nb", "a<br>\nb", "a<br>\nb", "a<br>\nb", {"a", "b"});
  row("a carriage return is dropped", "a\rb", "ab", "ab", "ab", {"ab"});
  row("both together break the line once", "a\r\nb", "a<br>\nb", "a<br>\nb", "a<br>\nb",
      {"a", "b"});
  row("a colour leaves no trace in the plain line", "a\x1B[31mb",
      "a<span style=\"color:#660000\">b", "a<span style=\"color:#660000\">b",
      "a<span style=\"color:#660000\">b", {"ab"});
  row("a blank is written as its number", "a b", "a&#32;b", "a&#32;b", "a b", {"a b"});
  row("two blanks keep their width", "a  b", "a&#32;&nbsp;b", "a&#32;&nbsp;b", "a  b", {"a  b"});
  row("three blanks keep their width", "   ", "&#32;&nbsp;&#32;", "&#32;&nbsp;&#32;", "   ",
      {"   "});
  row("a tag is text or markup", "a<b>c", "a&lt;b&gt;c", "a<b>c", "a<b>c", {"a<b>c"});
}

void TstOutputPipeline::specialBytes() {
  QFETCH(QByteArray, data);
  QFETCH(QByteArray, asText);
  QFETCH(QByteArray, asMarkup);
  QFETCH(QByteArray, insideTag);
  QFETCH(QList<QByteArray>, lines);
  Client client;
  client.read(data, plainText);
  QCOMPARE(client.shown(), client.shownOf(asText));
  QCOMPARE(client.host.lines(), lines);
  Client second;
  second.read(data, markup);
  QCOMPARE(second.shown(), second.shownOf(asMarkup));
  QCOMPARE(second.host.lines(), lines);
  Client third;
  third.read("<", markup);
  QVERIFY(third.pipeline.insideTag());
  third.read(data, markup);
  QCOMPARE(third.shown(), third.shownOf(insideTag));
  QCOMPARE(third.host.lines(), lines);
}

void TstOutputPipeline::shows_data() {
  QTest::addColumn<QByteArray>("data");
  QTest::addColumn<PipelineOptions>("options");
  QTest::addColumn<QByteArray>("html");
  PipelineOptions links = plainText;
  links.displayURLs = true;
  PipelineOptions stripped = plainText;
  stripped.displayAnsiColor = false;
  PipelineOptions markupLinks = links;
  markupLinks.parseHtml = true;
  const auto row = [](const char* name, const QByteArray& data, const PipelineOptions& options,
                      const QByteArray& html) { QTest::newRow(name) << data << options << html; };
  row("an address is a link", "www.example", links,
      "<a href=\"http://www.example\">http://www.example</a>");
  row("an address stays text while links are off", "www.example", plainText, "www.example");
  row("a link takes half a blank along", "see http://a.b/c now", links,
      "see&#32;<a href=\"http://a.b/c&#32\">http://a.b/c&#32</a>;now");
  row("a link ends at the break of its line", "http://a.b\r\nnow", links,
      "<a href=\"http://a.b\">http://a.b</a><br>\nnow");
  row("a link ends at a bracket that is text", "<http://a.b>", links,
      "&lt;<a href=\"http://a.b\">http://a.b</a>&gt;");
  row("a link runs over blanks inside a tag", "<a http://a.b c>", markupLinks,
      "<a <a href=\"http://a.b c\">http://a.b c</a>>");
  row("colours off leave the text", "\x1B[31mred", stripped, "red");
  row("colours off leave links", "\x1B[31mhttp://a", PipelineOptions{false, true, false, true},
      "<a href=\"http://a\">http://a</a>");
  row("a space placeholder of the server is a blank in markup", "<space>", markup, "&#32;");
  row("a tab placeholder of the server is a tab in markup", "<tab>", markup, shownTab);
  row("bracket placeholders of the server are brackets in markup", "<lt>b<gt>", markup,
      "&lt;b&gt;");
  row("a space placeholder is text elsewhere", "<space>", plainText, "&lt;space&gt;");
  row("entities of the server pass through", "&amp;&#32; ", plainText, "&amp;&#32;&nbsp;");
  row("markup characters in markup pass through", "<b>\"&'</b>", markup, "<b>\"&'</b>");
  row("UTF-8 is decoded", "\xC3\xA9\xE2\x98\x83", plainText, "\xC3\xA9\xE2\x98\x83");
  row("bytes that are no UTF-8 become replacement characters", "a\xC3z\x80", plainText,
      "a\xEF\xBF\xBDz\xEF\xBF\xBD");
  row("a character may have its blanks around it alone", "\xC2\xA0 ", plainText, "\xC2\xA0&#32;");
  row("a tab inside a tag is four hard blanks", "<b\t>", markup, "<b" + plainTab + ">");
  row("a tab after a tag is a placeholder again", "<b>\t", markup, "<b>" + shownTab);
}

void TstOutputPipeline::shows() {
  QFETCH(QByteArray, data);
  QFETCH(PipelineOptions, options);
  QFETCH(QByteArray, html);
  Client client;
  client.read(data, options);
  QCOMPARE(client.shown(), client.shownOf(html));
}

void TstOutputPipeline::handsOverLines_data() {
  QTest::addColumn<QByteArray>("data");
  QTest::addColumn<QList<QByteArray>>("lines");
  QTest::newRow("a partial line is a piece") << QByteArray("a\nb") << QList<QByteArray>{"a", "b"};
  QTest::newRow("a line feed at the end adds an empty piece")
      << QByteArray("a\n") << QList<QByteArray>{"a", ""};
  QTest::newRow("empty lines are pieces") << QByteArray("\n\n") << QList<QByteArray>{"", "", ""};
  QTest::newRow("no data is one empty piece") << QByteArray() << QList<QByteArray>{""};
  QTest::newRow("placeholders and entities are text")
      << QByteArray("<tab>&#32;<lt>") << QList<QByteArray>{"<tab>&#32;<lt>"};
  QTest::newRow("addresses are text")
      << QByteArray("www.a http://b") << QList<QByteArray>{"www.a http://b"};
  QTest::newRow("bytes stay raw") << QByteArray("\xC3\xA9\x80\xFE")
                                  << QList<QByteArray>{"\xC3\xA9\x80\xFE"};
}

void TstOutputPipeline::handsOverLines() {
  QFETCH(QByteArray, data);
  QFETCH(QList<QByteArray>, lines);
  for (const bool parseHtml : {false, true}) {
    Client client;
    client.read(data, {.parseHtml = parseHtml});
    QCOMPARE(client.host.all(Event::Kind::Vitals), lines);
    QCOMPARE(client.host.all(Event::Kind::Triggers), lines);
  }
}

void TstOutputPipeline::theOrderOfTheSteps() {
  Client client;
  client.read("a\nb\a");
  const QList<Event> expected{
      {Event::Kind::Beep, ""},    {Event::Kind::Html, client.shownOf("a<br>\nb")},
      {Event::Kind::Vitals, "a"}, {Event::Kind::Triggers, "a"},
      {Event::Kind::Vitals, "b"}, {Event::Kind::Triggers, "b"}};
  QVERIFY(client.host.events == expected);
}

void TstOutputPipeline::aReadOfNothingReopensItsSpanAndIsOneEmptyLine() {
  Client client;
  client.read({});
  const QList<Event> expected{{Event::Kind::Html, client.shownOf("")},
                              {Event::Kind::Vitals, ""},
                              {Event::Kind::Triggers, ""}};
  QVERIFY(client.host.events == expected);
}

void TstOutputPipeline::eachReadReopensTheCurrentSpan() {
  Client client;
  client.read("\x1B[31ma");
  QCOMPARE(client.shown(), client.shownOf(resetSpan + "<span style=\"color:#660000\">a", {}));
  client.read("b");
  QCOMPARE(client.shown(), client.shownOf(QByteArray("<span style=\"color:#660000\">b"), {}));
  client.read("\x1B[44mc");
  client.read("d");
  QCOMPARE(client.shown(),
           client.shownOf(QByteArray("<span style=\"background-color:#000066\">d"), {}));
}

void TstOutputPipeline::aPaletteColourIsReopenedAsBareText() {
  Client client;
  client.read("\x1B[38;5;196ma");
  QCOMPARE(client.shown(), client.shownOf(QByteArray("<span style=\"color:#ff0000\">a")));
  client.read("b");
  QCOMPARE(client.shown(), client.shownOf(QByteArray("#ff0000b"), {}));
  QCOMPARE(client.host.lines(), QList<QByteArray>{"b"});
}

void TstOutputPipeline::aTagStaysOpenAcrossReads() {
  Client client;
  client.read("<b ", markup);
  QCOMPARE(client.shown(), client.shownOf(QByteArray("<b ")));
  client.read(" \t> ", markup);
  QCOMPARE(client.shown(), client.shownOf(" " + plainTab + ">&#32;"));
  QVERIFY(!client.pipeline.insideTag());
}

void TstOutputPipeline::tagsCountOnlyWhileHtmlIsParsed() {
  Client client;
  client.read("<", plainText);
  QVERIFY(!client.pipeline.insideTag());
  client.read("<", markup);
  client.read("> ", plainText);
  QVERIFY(client.pipeline.insideTag());
  QCOMPARE(client.shown(), client.shownOf(QByteArray("&gt;&#32;")));
  client.read(" ", markup);
  QCOMPARE(client.shown(), client.shownOf(QByteArray(" ")));
}

void TstOutputPipeline::beepsOnceForARead() {
  Client client;
  client.read("\aa\a\a");
  QCOMPARE(client.host.all(Event::Kind::Beep).size(), 1);
  client.read("a");
  QCOMPARE(client.host.all(Event::Kind::Beep).size(), 0);
  PipelineOptions silent = plainText;
  silent.playBeeps = false;
  client.read("a\ab", silent);
  QCOMPARE(client.host.all(Event::Kind::Beep).size(), 0);
  QCOMPARE(client.shown(), client.shownOf(QByteArray("ab")));
  // A bell inside a colour sequence or a telnet command is part of that.
  client.read("\x1B[\am\xFF\a\a");
  QCOMPARE(client.host.all(Event::Kind::Beep).size(), 0);
}

void TstOutputPipeline::theVitalsSeeALineUpToItsNul() {
  Client client;
  const QByteArray data("a\0b\n\0c", 6);
  client.read(data);
  QCOMPARE(client.host.all(Event::Kind::Vitals), (QList<QByteArray>{"a", ""}));
  QCOMPARE(client.host.lines(), data.split('\n'));
  QCOMPARE(client.shown(), client.shownOf(QByteArray("a\0b<br>\n\0c", 10)));
}

void TstOutputPipeline::whatIsCutInTwo_data() {
  QTest::addColumn<QByteArray>("first");
  QTest::addColumn<QByteArray>("second");
  QTest::addColumn<QByteArray>("firstHtml");
  QTest::addColumn<QByteArray>("secondHtml");
  QTest::addColumn<QList<QByteArray>>("secondLines");
  const auto row = [](const char* name, const QByteArray& first, const QByteArray& second,
                      const QByteArray& firstHtml, const QByteArray& secondHtml,
                      const QList<QByteArray>& secondLines) {
    QTest::newRow(name) << first << second << firstHtml << secondHtml << secondLines;
  };
  row("a line arrives as two pieces", "You are ", "hungry.", "You&#32;are&#32;", "hungry.",
      {"hungry."});
  row("two blanks stay two soft ones", " ", " ", "&#32;", "&#32;", {" "});
  row("a colour loses its parameters", "\x1B[31", "ma", "", "a", {"a"});
  row("a colour cut after its escape is whole", "\x1B", "[31ma", "",
      "<span style=\"color:#660000\">a", {"a"});
  row("a resumed colour swallows text up to the next m", "\x1B[31", "room", "", resetSpan, {""});
  row("a telnet command loses its grip", "\xFF", "\xFB\x01", "", "\xEF\xBF\xBD\x01", {"\xFB\x01"});
  row("a character breaks", "\xC3", "\xA9", "\xEF\xBF\xBD", "\xEF\xBF\xBD", {"\xA9"});
  row("an address ends", "http://a", "b", "<a href=\"http://a\">http://a</a>", "b", {"b"});
  row("an address is not recognised", "http:/", "/a", "http:/", "/a", {"/a"});
  row("a line end counts once", "a\r", "\nb", "a", "<br>\nb", {"", "b"});
  row("a placeholder of the server stays markup", "<sp", "ace>", "<sp", "ace>", {"ace>"});
}

void TstOutputPipeline::whatIsCutInTwo() {
  QFETCH(QByteArray, first);
  QFETCH(QByteArray, second);
  QFETCH(QByteArray, firstHtml);
  QFETCH(QByteArray, secondHtml);
  QFETCH(QList<QByteArray>, secondLines);
  Client client;
  client.read(first, {});
  QCOMPARE(client.shown(), client.shownOf(firstHtml));
  client.read(second, {});
  QCOMPARE(client.shown(), client.shownOf(secondHtml));
  QCOMPARE(client.host.lines(), secondLines);
}

void TstOutputPipeline::becomesTextOrHtml_data() {
  QTest::addColumn<QByteArray>("data");
  QTest::addColumn<PipelineOptions>("options");
  QTest::addColumn<bool>("isText");
  const auto row = [](const char* name, const QByteArray& data, const PipelineOptions& options,
                      bool isText) { QTest::newRow(name) << data << options << isText; };
  const PipelineOptions all;
  row("nothing is text", "", all, true);
  row("colours are text", "\x1B[31mred\x1B[48;5;19m on blue\r\n", all, true);
  row("links are text", "see http://a.example/x?y=z now, or www.b.example", all, true);
  row("brackets are text while tags are not parsed", "a <b> c", plainText, true);
  row("a tag is HTML where tags are parsed", "a <b>c", all, false);
  row("so is what only begins like one", "a <= b", all, false);
  row("a closing bracket alone is text", "hp 40> ", all, true);
  row("an ampersand is text", "Tom & Jerry\n", all, true);
  row("so are the entities of blanks and brackets", "&lt;&#32;&nbsp;&gt;.", all, true);
  row("any other entity is the importer's", "&copy; 1999", all, false);
  row("so is what the end of a read may make one", "a &copy", all, false);
  row("what a line end or a colour cuts is none", "a &copy\n &nbsp\x1B[31m;", all, true);
  row("so is the mark of a paragraph's end", "a\xE2\x80\xA9z", all, false);
  row("so is that of an object", "a\xEF\xBF\xBCz", all, false);
  row("so is a target with a control in it", "http://a\vb", all, false);
  row("so is an endless run of addresses", QByteArray("www.").repeated(5000), all, false);
  row("one without addresses is text, however long", QByteArray("wwx").repeated(50'000), all, true);
}

void TstOutputPipeline::becomesTextOrHtml() {
  QFETCH(const QByteArray, data);
  QFETCH(const PipelineOptions, options);
  Client client;
  client.read(data, options);
  QTEST(std::holds_alternative<StyledText>(client.host.texts.last()), "isText");
}

void TstOutputPipeline::whatFollowsAnOpenTagIsHtml() {
  Client client;
  client.read("<b ", markup);
  client.read("text", markup);
  QVERIFY(client.shown().startsWith("HTML"));
  client.read("> ", plainText);
  QVERIFY(client.shown().startsWith("text"));
  client.read("> ", markup);
  QVERIFY(client.shown().startsWith("HTML"));
  client.read("> ", markup);
  QVERIFY(client.shown().startsWith("text"));
}

void TstOutputPipeline::aStoredColourOfAnyTextIsHtml() {
  Client client;
  AnsiTranslator::ColourTexts named = normalColours;
  named[1] = "red";
  client.pipeline.translator().buildColourSpans(named, boldColours);
  client.read("no red in it\x1B[32m");
  QVERIFY(client.shown().startsWith("text"));
  client.read("\x1B[31mred");
  QCOMPARE(client.shown(), "HTML: <span style=\"color:#006600\"><span style=\"color:red\">red");
}

void TstOutputPipeline::aLongReadOfHtmlIsInPieces() {
  Client client;
  const auto pieces = [&](qsizetype lines) {
    client.read("<b>" + QByteArray("a line of words\n").repeated(lines), markup);
    return std::get<std::vector<SafeHtml>>(client.host.texts.last()).size();
  };
  QCOMPARE(pieces(500), 1U);
  const std::size_t many = pieces(5000);
  QVERIFY2(many >= 8 && many <= 12, qPrintable(QString::number(many)));
}

void TstOutputPipeline::beforeTheColoursAreKnownAReadIsHtml() {
  OutputPipeline pipeline;
  RecordingHost host;
  // Nothing stands in front of the mark of byte order, so it is dropped.
  pipeline.readSocketData("\xEF\xBB\xBFx\xEF\xBB\xBF", plainText, host);
  QCOMPARE(host.shown(), "HTML: x\xEF\xBB\xBF");
}

KELMORA_TEST_MAIN(TstOutputPipeline)
#include "tst_outputpipeline.moc"
