#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <random>

#include "PipelineSupport.h"
#include "TwoPanes.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

constexpr PipelineOptions withLinks{
    .displayAnsiColor = true, .playBeeps = false, .parseHtml = false, .displayURLs = true};
constexpr PipelineOptions withTagsAndLinks{
    .displayAnsiColor = true, .playBeeps = false, .parseHtml = true, .displayURLs = true};

using Pieces = std::vector<QByteArray>;

const Pieces plainPieces{"You see a lamp.",
                         "the north gate",
                         " ",
                         "  ",
                         "\r\n",
                         "\n",
                         "\x1B[0m",
                         "\x1B[1m",
                         "\x1B[31m",
                         "\x1B[1;32m",
                         "\x1B[44m",
                         "\x1B[38;5;208m",
                         "\x1B[48;5;19m",
                         "\x1B[\n31m",
                         "\x1B[3",
                         "m",
                         "http://a.example/b?c=d&e",
                         "www.example",
                         "https://",
                         "Tom & Jerry",
                         "&lt;",
                         "&amp",
                         "&#33;",
                         "<b>",
                         "<",
                         ">",
                         "\t",
                         "\xFF\xFB\n",
                         "\xC3\xA4",
                         "\xC3",
                         "\xF0\x9F\x98\x80",
                         "\xEF\xBB\xBF",
                         "\xE3\x80\x80",
                         "\v"};
const Pieces inlinePieces{"You see a lamp.",
                          "the north gate",
                          " ",
                          "  ",
                          "\r\n",
                          "\n",
                          "\x1B[0m",
                          "\x1B[1;32m",
                          "\x1B[44m",
                          "\x1B[38;5;208m",
                          "<b>",
                          "</b>",
                          "<i>",
                          "</i>",
                          "<u>",
                          "<font color=red>",
                          "</font>",
                          "<font size=5>",
                          "<a href=\"http://a.example\">",
                          "</a>",
                          "<span style='color:#ff0000'>",
                          "</span>",
                          "<nobr>",
                          "</nobr>",
                          "<br>",
                          "<100hp 20sp>",
                          "a << b",
                          "<",
                          ">",
                          "<!-- x -->",
                          "<title>t</title>",
                          "&amp;",
                          "http://b.example",
                          "\xC3\xA4"};
const Pieces blockPieces{"<center>",
                         "</center>",
                         "<p>",
                         "</p>",
                         "<ul>",
                         "<li>",
                         "</ul>",
                         "<h1>",
                         "</h1>",
                         "<hr>",
                         "<pre>",
                         "</pre>",
                         "<div align=right>",
                         "</div>",
                         "<blockquote>",
                         "</blockquote>",
                         "<li>",
                         "</li>",
                         "<dd>"};

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  int below(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }
  const QByteArray& of(const Pieces& pieces) {
    return pieces[static_cast<std::size_t>(below(static_cast<int>(pieces.size())))];
  }
  /// Random data of about so many bytes.
  QByteArray read(const Pieces& pieces, qsizetype size) {
    QByteArray made;
    while (made.size() < size)
      made += of(pieces);
    return made;
  }

 private:
  std::mt19937 engine_;
};

}  // namespace

/// A long read is shown in parts, but in the end the pane shows the same as if all of
/// it were inserted at once.
class TestWholeReads : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aReadIsShownWholeHoweverLong_data();
  void aReadIsShownWholeHoweverLong();
  void aMarkOfByteOrderIsNoneBehindADivision();
  void withoutTagsThePaneShowsWhatTheToolkitAloneWould();
  void longReadsWithoutTags();
  void longReadsInColoursOfAnyName();
  void longReadsWithInlineTags();
  void readsWithBlocksOfUpToEightKilobytes();
  void theStateBehindALongReadIsThatOfItsBytes();
  void longReadsWithBlocksLoseNothing();
  void aLongReadLeavesKeysTheirTurns_data();
  void aLongReadLeavesKeysTheirTurns();

 private:
  static QString differenceAfter(TwoPanes& panes, const QByteArrayList& reads,
                                 const PipelineOptions& options,
                                 const AnsiTranslator::ColourTexts& colours = normalColours) {
    panes.begin(colours);
    for (const QByteArray& read : reads)
      panes.read(read, options);
    return panes.difference();
  }
  static Pieces withText(Pieces pieces) {
    pieces.insert(pieces.end(), pieces.size() / 2, "A lamp hangs over the gate to the north. ");
    return pieces;
  }
  /// One or two reads that are shown in parts, with other text before and behind them.
  /// The importer's time is quadratic in the number of open spans, so the reads are
  /// only a little longer than two parts, and many of their lines have no colours.
  static QByteArrayList longReads(Random& random, const Pieces& pieces) {
    QByteArrayList reads{random.read(pieces, random.below(500))};
    for (int count = 1 + random.below(2); count > 0; --count)
      reads << random.read(withText(pieces), 9'000 + random.below(9'000));
    return reads << random.read(pieces, random.below(500));
  }
};

void TestWholeReads::aReadIsShownWholeHoweverLong_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::newRow("a palette colour") << QByteArray("\x1B[38;5;208mYou see a lamp.\n");
  QTest::newRow("a palette colour and no other until the end")
      << QByteArray("\x1B[38;5;208m") + QByteArray("You see a lamp.\n").repeated(600);
  QTest::newRow("bold") << QByteArray("\x1B[0;31mred \x1B[1mbold\n") +
                               QByteArray("still bold\n").repeated(1000);
  QTest::newRow("a background before its text")
      << QByteArray("\x1B[44mon blue\n").repeated(600) + QByteArray("\x1B[31mred on blue\n");
  QTest::newRow("letters of several bytes") << QByteArray("\xE2\x82\xAC\xC3\xA4").repeated(2000);
  QTest::newRow("a line of a link")
      << QByteArray("http://a.example/") + QByteArray(20'000, 'x') + '\n';
  QTest::newRow("line ends in a colour code") << QByteArray("\x1B[3\n1mred\n").repeated(800);
  QTest::newRow("a line end in a telnet command") << QByteArray("\xFF\n\nx\n").repeated(3000);
  QTest::newRow("a mark of byte order where lines begin")
      << QByteArray("\xEF\xBB\xBFx\n").repeated(2000);
  QTest::newRow("blanks where lines begin and end") << QByteArray("  x  \n").repeated(2000);
  QTest::newRow("an entity's name before one of too many colours")
      << QByteArray("\x1B[31m").repeated(150) + "&copy; &nbsp\x1B[32m";
  QTest::newRow("lines of nothing") << QByteArray(20'000, '\n');
  QTest::newRow("one line end, which is the first byte") << '\n' + QByteArray(20'000, 'x');
  QTest::newRow("one line end, which is the last byte") << QByteArray(20'000, 'x') + '\n';
}

void TestWholeReads::aReadIsShownWholeHoweverLong() {
  QFETCH(const QByteArray, line);
  TwoPanes panes;
  const QByteArray read = line.repeated(static_cast<int>(18'000 / line.size()) + 1);
  QCOMPARE(differenceAfter(panes, {"before ", read, " behind"}, withLinks), QString());
  // The text of a palette colour is shown only at the beginning of a read.
  QCOMPARE(settled(panes.quick).toPlainText().count("#ff8700"),
           line.contains("\x1B[38;5;208m") ? 1 : 0);
}

void TestWholeReads::aMarkOfByteOrderIsNoneBehindADivision() {
  TwoPanes panes;
  // A read that begins with the text of a palette colour has no span open there.
  const QByteArray lines = QByteArray("\xEF\xBB\xBFx\n").repeated(5000);
  QCOMPARE(differenceAfter(panes, {"\x1B[38;5;208m", lines}, withLinks), QString());
}

void TestWholeReads::withoutTagsThePaneShowsWhatTheToolkitAloneWould() {
  TwoPanes panes;
  for (unsigned seed = 1; seed <= 3000; ++seed) {
    Random random(seed);
    QByteArrayList reads;
    for (int count = 1 + random.below(4); count > 0; --count)
      reads << random.read(plainPieces, random.below(300));
    const QString difference = differenceAfter(panes, reads, withLinks);
    QVERIFY2(difference.isEmpty(), qPrintable(QString::number(seed) + ": " + difference));
  }
}

void TestWholeReads::longReadsWithoutTags() {
  TwoPanes panes;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    Random random(seed);
    const QByteArrayList reads = longReads(random, plainPieces);
    const QString difference = differenceAfter(panes, reads, withLinks);
    QVERIFY2(difference.isEmpty(), qPrintable(QString::number(seed) + ": " + difference));
  }
}

void TestWholeReads::longReadsInColoursOfAnyName() {
  const AnsiTranslator::ColourTexts named{"black",       "red", "#060",    "#666600",
                                          "rgb(0,0,99)", "",    "#12345g", "#bdbdbd"};
  TwoPanes panes;
  for (unsigned seed = 1; seed <= 30; ++seed) {
    Random random(seed);
    const QByteArrayList reads = longReads(random, plainPieces);
    const QString difference = differenceAfter(panes, reads, withLinks, named);
    QVERIFY2(difference.isEmpty(), qPrintable(QString::number(seed) + ": " + difference));
  }
}

void TestWholeReads::longReadsWithInlineTags() {
  TwoPanes panes;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    Random random(seed);
    const QByteArrayList reads = longReads(random, inlinePieces);
    const QString difference = differenceAfter(panes, reads, withTagsAndLinks);
    QVERIFY2(difference.isEmpty(), qPrintable(QString::number(seed) + ": " + difference));
  }
}

void TestWholeReads::readsWithBlocksOfUpToEightKilobytes() {
  TwoPanes panes;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    Random random(seed);
    QByteArray read;
    while (read.size() < 8000)
      read += random.below(20) == 0 ? random.of(blockPieces) : random.of(inlinePieces);
    const QString difference = differenceAfter(panes, {read}, withTagsAndLinks);
    if (panes.literal.document()->blockCount() >= OutputWidget::limits.paragraphs)
      continue;
    QVERIFY2(difference.isEmpty(), qPrintable(QString::number(seed) + ": " + difference));
  }
}

void TestWholeReads::theStateBehindALongReadIsThatOfItsBytes() {
  Client whole;
  LiteralPipeline literal;
  literal.buildColourSpans(normalColours, boldColours);
  for (unsigned seed = 1; seed <= 100; ++seed) {
    Random random(seed);
    for (const PipelineOptions& options : {withLinks, withTagsAndLinks}) {
      const QByteArray read = random.read(plainPieces, 12'000);
      whole.read(read, options);
      QCOMPARE(whole.host.events, expectedOf(literal, read, options));
    }
  }
}

void TestWholeReads::longReadsWithBlocksLoseNothing() {
  TwoPanes panes;
  QByteArray read = "<center><font color=red>";
  for (int i = 0; i < 400; ++i)
    read += "<p>paragraph " + QByteArray::number(i) + " of the tale</p>" +
            QByteArray("with more lines\n").repeated(5);
  panes.read(read, withTagsAndLinks);
  const auto words = [](OutputWidget& pane) {
    return settled(pane).toPlainText().split(QRegularExpression("\\s+"), Qt::SkipEmptyParts);
  };
  QCOMPARE(words(panes.quick).join(' ').remove(' '),
           panes.literal.toPlainText().remove(QRegularExpression("\\s+")));
  const QTextCursor last = settled(panes.quick).document()->find("paragraph 399");
  QVERIFY(last.blockFormat().alignment().testFlag(Qt::AlignHCenter));
  QCOMPARE(last.charFormat().foreground().color(), QColor("red"));
}

void TestWholeReads::aLongReadLeavesKeysTheirTurns_data() {
  QTest::addColumn<QByteArray>("read");
  QTest::addColumn<PipelineOptions>("options");
  QTest::addColumn<AnsiTranslator::ColourTexts>("colours");
  QByteArray game;
  for (int i = 0; game.size() < 2'000'000; ++i)
    game += "\x1B[3" + QByteArray::number(i % 8) + "mYou see lamp " + QByteArray::number(i) +
            "\x1B[0m and a door to the north.\r\n";
  AnsiTranslator::ColourTexts named = normalColours;
  named[1] = "red";
  const auto row = [](const char* name, const QByteArray& read, const PipelineOptions& options,
                      const AnsiTranslator::ColourTexts& colours = normalColours) {
    QTest::newRow(name) << read << options << colours;
  };
  row("text of the game", game, withLinks);
  row("text of the game, in a colour by its name", game, withLinks, named);
  row("text of the game, with prompts in brackets", game.replace("and a door", "<100hp 20sp>"),
      withTagsAndLinks);
  row("items in lists in lists",
      QByteArray("<ul>").repeated(32) + QByteArray("<li>x").repeated(10'000), withTagsAndLinks);
  row("bold words without a line end", QByteArray("<b>word</b> other ").repeated(20'000),
      withTagsAndLinks);
}

void TestWholeReads::aLongReadLeavesKeysTheirTurns() {
  QFETCH(const QByteArray, read);
  QFETCH(const PipelineOptions, options);
  QFETCH(const AnsiTranslator::ColourTexts, colours);
  // The longest turn, in milliseconds. Inserting all at once takes seconds to minutes.
  // The limit is high because of busy machines and sanitizers.
  constexpr qint64 patience = 10'000;
  TwoPanes panes;
  RecordingHost host;
  OutputPipeline pipeline;
  pipeline.translator().buildColourSpans(colours, boldColours);
  pipeline.readSocketData(read, options, host);
  QElapsedTimer timer;
  timer.start();
  panes.quick.showServerText(host.texts.first());
  qint64 longest = timer.elapsed();
  int turns = 0;
  while (!panes.quick.settled() && turns < 20) {
    timer.start();
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    longest = std::max(longest, timer.elapsed());
    ++turns;
  }
  QVERIFY2(turns > 1, qPrintable(QString::number(turns)));
  QVERIFY2(longest < patience, qPrintable(QString::number(longest)));
}

KELMORA_GUI_TEST_MAIN(TestWholeReads)
#include "tst_wholereads.moc"
