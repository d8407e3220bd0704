#include <QApplication>
#include <QTest>
#include <QTextBrowser>
#include <random>

#include "PaneContent.h"
#include "PipelineSupport.h"
#include "support/LiteralPane.h"
#include "support/ScratchMain.h"
#include "terminal/view/PaneDocument.h"
#include "terminal/view/PaneQueue.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// Limits so small that even a short stream pushes paragraphs out of the pane.
constexpr int paragraphs = 5;
constexpr ParagraphEnds::Lengths lengths{.longParagraph = 24, .longestParagraph = 64};

StyledText textOf(const QString& text) {
  return {text, {{text.size(), {}, {}}}};
}

SafeHtml htmlOf(const QString& html) {
  return safeMarkup(html);
}

/// A pane that shows waiting text only when it is told to.
class SmallPane : public PipelineHost {
 public:
  void showWaiting(int texts = std::numeric_limits<int>::max()) {
    clearings += PaneQueue(queue).takeClearing() ? 1 : 0;
    // A deadline that has passed makes write() take a single text.
    for (; texts > 0 && !queue.isEmpty(); --texts)
      document_.write(queue, QDeadlineTimer(0));
  }

  void beep() override {}
  void showServerText(ServerText text) override { queue.add(std::move(text)); }
  void parseVitals(const char* /*line*/) override {}
  void checkTriggers(const QByteArray& /*line*/) override {}

  PaneQueue queue{paragraphs, lengths};
  QTextBrowser view;
  int clearings = 0;

 private:
  PaneDocument document_{view, {.paragraphs = paragraphs, .lengths = lengths}};
};

/// Sends a random stream of reads and messages to two panes: to one each by itself,
/// and to the other through a queue, as in a flood.
class Flood {
 public:
  Flood(unsigned seed, const PipelineOptions& options) : engine_(seed), options_(options) {
    pipeline_.translator().buildColourSpans(normalColours, boldColours);
    rules_.buildColourSpans(normalColours, boldColours);
    oneByOne.document()->setMaximumBlockCount(paragraphs);
  }

  void play() {
    for (int step = 1 + pick(60); step > 0; --step) {
      if (pick(8) == 0)
        message();
      else
        read();
      if (pick(30) == 0)
        pane.showWaiting(pick(4));
    }
    pane.showWaiting();
  }

  SmallPane pane;
  LiteralPane oneByOne{lengths.longParagraph, lengths.longestParagraph};

 private:
  int pick(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }

  void read() {
    static const QByteArrayList pieces{"You see a lamp.",
                                       " ",
                                       "the north gate",
                                       "\r\n",
                                       "\n",
                                       "  ",
                                       "\x1B[0m",
                                       "\x1B[1;31m",
                                       "\x1B[44m",
                                       "\t",
                                       "\x1B[38;5;208m",
                                       "http://a.example/x ",
                                       "\xF0\x9F\x98\x80x",
                                       "a longer line of text, with a few more words in it",
                                       "<b>",
                                       "</b>",
                                       "&copy;",
                                       "<center>",
                                       "</center>",
                                       "<table>",
                                       "<br>",
                                       "<i>slanted"};
    constexpr int withoutTags = 14;
    const int count = options_.parseHtml ? static_cast<int>(pieces.size()) : withoutTags;
    QByteArray data;
    for (int left = pick(12); left > 0; --left)
      data += pieces.at(pick(pick(3) == 0 ? count : withoutTags));
    const QString html = rules_.htmlOf(data, options_);
    oneByOne.insertServerHtml(options_.parseHtml ? safeMarkup(html).html() : html);
    pipeline_.readSocketData(data, options_, pane);
  }

  void message() {
    if (options_.parseHtml && pick(3) == 0) {
      oneByOne.appendStatusLine(QStringLiteral("<i>status</i>"));
      pane.queue.add(PaneText(StatusLine{htmlOf(QStringLiteral("<i>status</i>"))}));
      return;
    }
    oneByOne.echoSentText(QStringLiteral("look\r\n"));
    pane.queue.add(PaneText(PlainText{QStringLiteral("look\r\n"), Qt::yellow, Qt::black}));
  }

  std::mt19937 engine_;
  PipelineOptions options_;
  OutputPipeline pipeline_;
  LiteralPipeline rules_;
};

}  // namespace

class TestPaneQueue : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void takesInOrder();
  void aLongTextIsTakenInSlices();
  void noSliceTearsAPair();
  void ofALongTextTheFrontIsTakenOffToo();
  void ofAFloodOnlyWhatFillsThePaneWaits();
  void linksAndLineBreaksCountAsMemory();
  void dropsNothingBefore_data();
  void dropsNothingBefore();
  void dropsUnseen_data();
  void dropsUnseen();
  void aFloodOfServerTextLeavesWhatOneByOneInsertionLeaves();
  void aFloodWithTagsLeavesAFullPaneAndItsEnd();
  void theFirstTextBringsItsParagraphsFormatsAlong();
};

void TestPaneQueue::takesInOrder() {
  PaneQueue queue(paragraphs, lengths);
  QVERIFY(queue.isEmpty());
  queue.add(PaneText(textOf("one")));
  queue.add(PaneText(PlainText{"two", {}, {}}));
  queue.add(ServerText(safeMarkupPieces("<b>three words</b>", 5)));
  QCOMPARE(std::get<StyledText>(queue.take()).text, "one");
  QCOMPARE(std::get<PlainText>(queue.take()).text, "two");
  QCOMPARE(std::get<SafeHtml>(queue.take()).html(), "<b>thr");
  QCOMPARE(std::get<SafeHtml>(queue.take()).html(), "<b>ee wor");
  QCOMPARE(std::get<SafeHtml>(queue.take()).html(), "<b>ds</b>");
  QVERIFY(queue.isEmpty());
  QCOMPARE(queue.size(), 0);
}

void TestPaneQueue::aLongTextIsTakenInSlices() {
  PaneQueue queue(750, {});
  StyledText text;
  for (quint32 i = 0; text.text.size() < 100'000; ++i) {
    text.text += QString(static_cast<qsizetype>(i * 37 % 5000 + 1), QChar('a' + i % 26));
    text.runs.push_back({text.text.size(), {.text = i}, i % 3 == 0 ? "http://a" : QString()});
  }
  queue.add(ServerText(text));
  queue.add(PaneText(textOf("behind")));
  StyledText joined;
  int slices = 0;
  for (; joined.text.size() < text.text.size(); ++slices) {
    const qsizetype before = queue.size();
    const auto slice = std::get<StyledText>(queue.take());
    QVERIFY(queue.size() < before);
    QVERIFY(slice.text.size() <= PaneQueue::sliceLength);
    QCOMPARE(slice.runs.back().end, slice.text.size());
    for (StyledText::Run run : slice.runs) {
      run.end += joined.text.size();
      joined.runs.push_back(run);
    }
    joined.text += slice.text;
  }
  QVERIFY(slices < 15);
  QVERIFY(LiteralText::joined(joined) == text);
  QCOMPARE(std::get<StyledText>(queue.take()).text, "behind");
  QCOMPARE(queue.size(), 0);
}

void TestPaneQueue::noSliceTearsAPair() {
  for (const QString before : {"", "x"}) {
    PaneQueue queue(750, {});
    const QString text = before + QStringLiteral("\U0001F600").repeated(20'000);
    queue.add(ServerText(textOf(text)));
    QString joined;
    while (!queue.isEmpty()) {
      const QString slice = std::get<StyledText>(queue.take()).text;
      QVERIFY(!slice.front().isLowSurrogate());
      joined += slice;
    }
    QCOMPARE(joined, text);
  }
}

void TestPaneQueue::ofALongTextTheFrontIsTakenOffToo() {
  SmallPane pane;
  QString text;
  for (int line = 0; line < 10'000; ++line)
    text += QStringLiteral("the line of the number %1").arg(line) + QChar(QChar::LineSeparator);
  pane.queue.add(ServerText(textOf(text)));
  QVERIFY(pane.queue.size() < 2000);
  pane.showWaiting();
  QCOMPARE(pane.clearings, 1);
  QCOMPARE(pane.view.toPlainText().section('\n', 0, 0), "the line of the number 9996");
  QCOMPARE(pane.view.document()->blockCount(), paragraphs);
}

void TestPaneQueue::ofAFloodOnlyWhatFillsThePaneWaits() {
  PaneQueue queue(750, {});
  const QString line = QString(80, u'x') + QChar(QChar::LineSeparator);
  qsizetype most = 0;
  for (int read = 0; read < 600; ++read) {
    queue.add(ServerText(textOf(line.repeated(200))));
    most = std::max(most, queue.size());
  }
  QVERIFY2(most < 8 * 1024 * 1024, qPrintable(QString::number(most)));
}

void TestPaneQueue::linksAndLineBreaksCountAsMemory() {
  constexpr qsizetype million = 1'000'000;
  PaneQueue links(paragraphs, lengths);
  links.add(PaneText(StyledText{"x", {{1, {}, QString(million, u'a')}}}));
  QVERIFY(links.size() >= million * qsizetype{sizeof(QChar)});
  PaneQueue breaks(750, {});
  const QString html = QStringLiteral("<br>").repeated(1000);
  breaks.add(PaneText(htmlOf(html)));
  QVERIFY(breaks.size() >=
          html.size() * qsizetype{sizeof(QChar)} + 1000 * qsizetype{sizeof(qsizetype)});
}

void TestPaneQueue::dropsNothingBefore_data() {
  QTest::addColumn<QString>("html");
  QTest::newRow("an alignment works on behind its text") << "<center>middle</center>";
  QTest::newRow("so does a paragraph") << "<p>paragraph";
  QTest::newRow("what an entity shows is not known") << "&#32;";
  QTest::newRow("nor whether it ends paragraphs") << "text &#8233; text";
  QTest::newRow("nor whether blanks show") << " ";
}

void TestPaneQueue::dropsNothingBefore() {
  QFETCH(const QString, html);
  PaneQueue queue(paragraphs, lengths);
  queue.add(PaneText(htmlOf(html)));
  for (int i = 0; i < 100; ++i)
    queue.add(PaneText(PlainText{"told\n", Qt::white, Qt::blue}));
  QVERIFY(!queue.takeClearing());
  QCOMPARE(std::get<SafeHtml>(queue.take()).html(), html);
}

void TestPaneQueue::dropsUnseen_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<bool>("hasStandIn");
  QTest::newRow("text is followed by its look") << "text" << true;
  QTest::newRow("a line end has one too") << "<br>" << true;
  QTest::newRow("tags around nothing have none") << "<b></b>" << false;
  QTest::newRow("a table becomes lines") << "<table><tr><td>cell</table>" << true;
}

void TestPaneQueue::dropsUnseen() {
  QFETCH(const QString, html);
  QFETCH(const bool, hasStandIn);
  PaneQueue queue(paragraphs, lengths);
  queue.add(PaneText(htmlOf(html)));
  for (int i = 0; i < 100; ++i)
    queue.add(PaneText(PlainText{QString::number(i) + '\n', Qt::white, Qt::blue}));
  QCOMPARE(queue.takeClearing(), hasStandIn);
  if (hasStandIn)
    QCOMPARE(std::get<SafeHtml>(queue.take()).html(), htmlOf(html).html());
  const QString first = std::get<PlainText>(queue.take()).text;
  QVERIFY2(first.toInt() > 90 && first.toInt() < 95, qPrintable(first));
}

void TestPaneQueue::aFloodOfServerTextLeavesWhatOneByOneInsertionLeaves() {
  int clearings = 0;
  for (unsigned seed = 1; seed <= 3000; ++seed) {
    Flood flood(seed, {.parseHtml = false});
    flood.play();
    clearings += flood.pane.clearings;
    const QString difference = PaneContent::of(*flood.pane.view.document())
                                   .differenceTo(PaneContent::of(*flood.oneByOne.document()));
    QVERIFY2(difference.isEmpty(), qPrintable(QString::number(seed) + ": " + difference));
  }
  QVERIFY(clearings > 1000);
}

void TestPaneQueue::aFloodWithTagsLeavesAFullPaneAndItsEnd() {
  int clearings = 0;
  for (unsigned seed = 1; seed <= 3000; ++seed) {
    Flood flood(seed, {.parseHtml = true});
    flood.play();
    if (flood.pane.clearings == 0)
      continue;
    ++clearings;
    QCOMPARE(flood.pane.view.document()->blockCount(), paragraphs);
    // Paragraphs may begin at other line ends than in the other pane, so only the
    // text at the end is compared.
    const QString flooded = flood.pane.view.toPlainText();
    const QString oneByOne = flood.oneByOne.toPlainText();
    const qsizetype both = std::min(flooded.size(), oneByOne.size());
    QVERIFY2(flooded.last(both) == oneByOne.last(both),
             qPrintable(QString::number(seed) + ": " + flooded + "\n|\n" + oneByOne));
  }
  QVERIFY(clearings > 300);
}

void TestPaneQueue::theFirstTextBringsItsParagraphsFormatsAlong() {
  // The importer resets the formats of an empty document's paragraph too.
  SmallPane pane;
  LiteralPane literal(lengths.longParagraph, lengths.longestParagraph);
  QTextBlockFormat right;
  right.setAlignment(Qt::AlignRight);
  QTextCharFormat slanted;
  slanted.setFontItalic(true);
  for (QTextDocument* document : {pane.view.document(), literal.document()}) {
    QTextCursor cursor(document);
    cursor.setBlockFormat(right);
    cursor.setBlockCharFormat(slanted);
  }
  const auto show = [&](const QString& text) {
    pane.queue.add(ServerText(textOf(text)));
    pane.showWaiting();
    literal.insertServerHtml(text);
    return PaneContent::of(*pane.view.document())
        .differenceTo(PaneContent::of(*literal.document()));
  };
  QCOMPARE(show(""), QString());
  QCOMPARE(pane.view.document()->begin().blockFormat(), right);
  QCOMPARE(show("text"), QString());
  QVERIFY(pane.view.document()->begin().blockFormat() != right);
}

KELMORA_GUI_TEST_MAIN(TestPaneQueue)
#include "tst_panequeue.moc"
