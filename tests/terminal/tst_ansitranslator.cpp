#include <QTest>

#include "PipelineSupport.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"
#include "terminal/core/AnsiTranslator.h"
#include "terminal/core/Palette.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

QByteArray foreground(const QByteArray& colour) {
  return "<span style=\"color:" + colour + "\">";
}

QByteArray background(const QByteArray& colour) {
  return "<span style=\"background-color:" + colour + "\">";
}

QByteArray normal(std::size_t k) {
  return foreground(normalColours.at(k));
}
QByteArray bold(std::size_t k) {
  return foreground(boldColours.at(k));
}
QByteArray back(std::size_t k) {
  return background(normalColours.at(k));
}

/// Collects the HTML of all spans.
class HtmlSpans final : public SpanSink {
 public:
  void openSpan(const ColourSpan& span) override { html += span.html; }
  void addBareColour(QByteArrayView colour) override { html += colour; }
  QByteArray html;
};

/// A translator with colours, fed with whole reads.
class Reader {
 public:
  Reader() { translator.buildColourSpans(normalColours, boldColours); }

  /// The HTML that the escape sequences of a read make; all other bytes are ignored.
  QByteArray read(const QByteArray& data,
                  AnsiTranslator::Colours colours = AnsiTranslator::Colours::Shown) {
    HtmlSpans spans;
    text.clear();
    for (qsizetype index = 0; index < data.size(); ++index) {
      if (translator.escapePending()) {
        --index;
        translator.translateEscape(index, data, spans, colours);
      } else if (data.at(index) == '\x1B') {
        translator.translateEscape(index, data, spans, colours);
      } else {
        text += data.at(index);
      }
    }
    return spans.html;
  }

  AnsiTranslator translator;
  QByteArray text;
};

}  // namespace

class TstAnsiTranslator : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void translates_data();
  void translates();
  void everyCode_data();
  void everyCode();
  void everyPaletteColour();
  void stripsColours_data();
  void stripsColours();
  void resumesWithNothingRead_data();
  void resumesWithNothingRead();
  void remembersTheForegroundForBold();
  void rebuildingReturnsToTheResetColours();
  void equalColourTextsAreStillDifferentColours();
  void spansOfNormalColours();
  void nothingIsOpenedBeforeTheColoursAreKnown();
  void hostileSequencesTakeLinearTime_data();
  void hostileSequencesTakeLinearTime();
};

void TstAnsiTranslator::translates_data() {
  QTest::addColumn<QByteArray>("data");
  QTest::addColumn<QByteArray>("html");
  QTest::addColumn<QByteArray>("current");
  QTest::addColumn<QByteArray>("text");
  const auto row = [](const char* name, const QByteArray& data, const QByteArray& html,
                      const QByteArray& current, const QByteArray& text = {}) {
    QTest::newRow(name) << data << html << current << text;
  };
  row("red opens the normal red span", "\x1B[31mx", normal(1), normal(1), "x");
  row("no parameter resets", "\x1B[mx", resetSpan, resetSpan, "x");
  row("an m right after the escape emits nothing",
      "\x1B"
      "mx",
      "", resetSpan, "x");
  row("any byte may introduce a sequence", "\x1B?31mx", normal(1), normal(1), "x");
  row("an escape may introduce a sequence",
      "\x1B\x1B"
      "31mx",
      normal(1), normal(1), "x");
  row("a missing introducer eats a digit",
      "\x1B"
      "131m",
      normal(1), normal(1));
  row("a sequence runs to the next m, whatever it is", "\x1B[2J room", resetSpan, resetSpan);
  row("bold opens the bold span of the foreground", "\x1B[1m", bold(7), resetSpan);
  row("bold and then red in two sequences", "\x1B[1m\x1B[31m", bold(7) + bold(1), bold(1));
  row("parameters pile up: bold, then code 131", "\x1B[1;31m", bold(7), resetSpan);
  row("parameters pile up: reset, then code 032", "\x1B[0;32m", resetSpan + normal(2), normal(2));
  row("parameters pile up: an empty first one resets", "\x1B[;31m", resetSpan + normal(1),
      normal(1));
  row("an empty last parameter repeats the code", "\x1B[31;m", normal(1) + normal(1), normal(1));
  row("semicolons alone reset each", "\x1B[;;m", resetSpan + resetSpan + resetSpan, resetSpan);
  row("piled digits beyond 32 bits reset", "\x1B[21474836;48m", resetSpan, resetSpan);
  row("the low byte of a number is its code", "\x1B[287m", normal(1), normal(1));
  row("the low byte of the largest number does nothing", "\x1B[2147483647m", "", resetSpan);
  row("the low byte of a negative number is its code", "\x1B[-225m", normal(1), normal(1));
  row("minus 256 resets", "\x1B[-256m", resetSpan, resetSpan);
  row("a number that does not fit resets", "\x1B[2147483648m", resetSpan, resetSpan);
  row("a number far too long resets", "\x1B[" + QByteArray(100, '9') + "m", resetSpan, resetSpan);
  row("leading zeros are no matter", "\x1B[" + QByteArray(100, '0') + "31m", normal(1), normal(1));
  row("a text that is no number resets", "\x1B[3x1m", resetSpan, resetSpan);
  row("blanks around a number are no matter", "\x1B[ 31 m", normal(1), normal(1));
  row("a plus sign is no matter", "\x1B[+31m", normal(1), normal(1));
  row("a background becomes the current span", "\x1B[44m", back(4), back(4));
  row("a background after a colour", "\x1B[31m\x1B[44m", normal(1) + back(4), back(4));
  row("backgrounds are normal while bold", "\x1B[1m\x1B[44m", bold(7) + back(4), back(4));
  row("a reset ends bold", "\x1B[1m\x1B[0m\x1B[32m", bold(7) + resetSpan + normal(2), normal(2));
  row("a reset keeps the foreground for bold", "\x1B[31m\x1B[0m\x1B[1m",
      normal(1) + resetSpan + bold(1), resetSpan);
  row("a palette foreground is bare in the next read", "\x1B[38;5;196mx", foreground("#ff0000"),
      "#ff0000", "x");
  row("a palette background leaves the current span", "\x1B[31m\x1B[48;5;21m",
      normal(1) + background("#0000ff"), normal(1));
  row("bold after a palette foreground opens nothing", "\x1B[38;5;196m\x1B[1m",
      foreground("#ff0000"), "#ff0000");
  row("bold after a palette background opens its span", "\x1B[48;5;196m\x1B[1m",
      background("#ff0000") + bold(7), resetSpan);
  row("a number whose low byte is 38 is never followed by an index", "\x1B[294;5;196m", "",
      resetSpan);
  row("zero and 38 is never followed by an index", "\x1B[038;5;196m", "", resetSpan);
  row("bold and then a palette colour pile up", "\x1B[1;38;5;196m", bold(7), resetSpan);
  row("38 alone does nothing", "\x1B[38mx", "", resetSpan, "x");
  row("38 and 5 alone do nothing", "\x1B[38;5mx", "", resetSpan, "x");
  row("38 and 2 do nothing", "\x1B[38;2;255;0;0mx", "", resetSpan, "x");
  row("an empty index is black", "\x1B[38;5;mx", foreground("#000000"), "#000000", "x");
  row("an index that is no number is black", "\x1B[38;5;19x6m", foreground("#000000"), "#000000");
  row("a code after the index spoils it", "\x1B[38;5;196;1m", foreground("#000000"), "#000000");
  row("an index that does not fit is black", "\x1B[48;5;4294967297m", background("#000000"),
      resetSpan);
  row("blanks around an index are no matter", "\x1B[38;5; 196 m", foreground("#ff0000"), "#ff0000");
  row("the last index", "\x1B[38;5;255m", foreground("#eeeeee"), "#eeeeee");
  row("an index above 255 changes nothing", "\x1B[31m\x1B[38;5;256m\x1B[1m", normal(1) + bold(1),
      normal(1));
  row("a background index above 255 changes nothing", "\x1B[48;5;256m", "", resetSpan);
  row("a negative index changes nothing", "\x1B[38;5;-1m", "", resetSpan);
  row("an empty parameter before 48 resets and spoils nothing", "\x1B[;48;5;1m",
      resetSpan + background("#800000"), resetSpan);
  row("a code before 48 spoils it", "\x1B[2;48;5;1m", "", resetSpan);
}

void TstAnsiTranslator::translates() {
  QFETCH(QByteArray, data);
  QFETCH(QByteArray, html);
  QFETCH(QByteArray, current);
  QFETCH(QByteArray, text);
  Reader reader;
  QCOMPARE(reader.read(data), html);
  QCOMPARE(reader.translator.currentSpan(), current);
  QCOMPARE(reader.text, text);
  QVERIFY(!reader.translator.escapePending() || data.contains('J'));
}

void TstAnsiTranslator::everyCode_data() {
  QTest::addColumn<int>("code");
  for (int code = 0; code < 256; ++code)
    QTest::addRow("code %d does what it says", code) << code;
}

void TstAnsiTranslator::everyCode() {
  QFETCH(int, code);
  const auto k = static_cast<std::size_t>(code % 10);
  const bool isForeground = code >= 30 && code <= 37;
  const bool isBackground = code >= 40 && code <= 47;
  for (const bool startBold : {false, true}) {
    // Three numbers with the same low byte, which alone counts.
    for (const int number : {code, code + 256, code - 512}) {
      Reader reader;
      const QByteArray start = startBold ? "\x1B[1m\x1B[32m" : "\x1B[32m";
      reader.read(start);
      const QByteArray before = reader.translator.currentSpan().toByteArray();
      QByteArray html;
      if (code == 0)
        html = resetSpan;
      else if (code == 1)
        html = bold(2);
      else if (isForeground)
        html = startBold ? bold(k) : normal(k);
      else if (isBackground)
        html = back(k);
      QCOMPARE(reader.read("\x1B[" + QByteArray::number(number) + "m"), html);
      QCOMPARE(reader.translator.currentSpan(),
               code == 0 || isForeground || isBackground ? html : before);
      QCOMPARE(reader.translator.boldActive(), code == 1 || (startBold && code != 0));
      QVERIFY(!reader.translator.escapePending());
      QCOMPARE(reader.read("\x1B[1m"), bold(isForeground ? k : 2));
      // A palette index follows only if the parameter is written exactly 38 or 48.
      const QByteArray palette =
          reader.read("\x1B[" + QByteArray::number(number) + ";5;208m").right(9);
      QCOMPARE(palette == "#ff8700\">", number == 38 || number == 48);
    }
  }
}

void TstAnsiTranslator::everyPaletteColour() {
  // The first and last colours of each of the palette's three parts.
  QCOMPARE(*paletteColour(0), "#000000");
  QCOMPARE(*paletteColour(1), "#800000");
  QCOMPARE(*paletteColour(7), "#c0c0c0");
  QCOMPARE(*paletteColour(8), "#808080");
  QCOMPARE(*paletteColour(15), "#ffffff");
  QCOMPARE(*paletteColour(16), "#000000");
  QCOMPARE(*paletteColour(17), "#00005f");
  QCOMPARE(*paletteColour(21), "#0000ff");
  QCOMPARE(*paletteColour(22), "#005f00");
  QCOMPARE(*paletteColour(52), "#5f0000");
  QCOMPARE(*paletteColour(123), "#87ffff");
  QCOMPARE(*paletteColour(196), "#ff0000");
  QCOMPARE(*paletteColour(231), "#ffffff");
  QCOMPARE(*paletteColour(232), "#080808");
  QCOMPARE(*paletteColour(244), "#808080");
  QCOMPARE(*paletteColour(255), "#eeeeee");
  QVERIFY(!paletteColour(256));
  QVERIFY(!paletteColour(std::numeric_limits<quint32>::max()));

  const QByteArray named =
      "#000000#800000#008000#808000#000080#800080#008080#c0c0c0"
      "#808080#ff0000#00ff00#ffff00#0000ff#ff00ff#00ffff#ffffff";
  const QByteArray levels = "005f87afd7ff";
  for (int n = 0; n < 256; ++n) {
    QByteArray text = named.mid(n * 7, 7);
    if (n >= 232)
      text = '#' + QByteArray::number(8 + (n - 232) * 10, 16).rightJustified(2, '0').repeated(3);
    else if (n >= 16)
      text = '#' + levels.mid((n - 16) / 36 * 2, 2) + levels.mid((n - 16) / 6 % 6 * 2, 2) +
             levels.mid((n - 16) % 6 * 2, 2);
    QCOMPARE(paletteColour(static_cast<quint32>(n))->toByteArray(), text);
    Reader reader;
    QCOMPARE(reader.read("\x1B[38;5;" + QByteArray::number(n) + "m"), foreground(text));
    QCOMPARE(reader.read("\x1B[48;5;" + QByteArray::number(n) + "m"), background(text));
    QCOMPARE(reader.translator.currentSpan(), text);
  }
}

void TstAnsiTranslator::stripsColours_data() {
  QTest::addColumn<QByteArray>("data");
  for (const char* data :
       {"\x1B[31mred", "\x1B[mred", "\x1B[1;31mred", "\x1B[38;5;196mred", "\x1B[48;5;1mred",
        "\x1B"
        "mred",
        "\x1B[xmred"})
    QTest::addRow("%s leaves its text", data + 1) << QByteArray(data);
}

void TstAnsiTranslator::stripsColours() {
  QFETCH(QByteArray, data);
  Reader reader;
  QCOMPARE(reader.read(data, AnsiTranslator::Colours::Stripped), QByteArray());
  QCOMPARE(reader.text, QByteArray("red"));
  QCOMPARE(reader.translator.currentSpan(), resetSpan);
  QVERIFY(!reader.translator.boldActive());
  QVERIFY(!reader.translator.escapePending());
}

void TstAnsiTranslator::resumesWithNothingRead_data() {
  QTest::addColumn<QByteArray>("first");
  QTest::addColumn<QByteArray>("second");
  QTest::addColumn<QByteArray>("html");
  QTest::addColumn<QByteArray>("text");
  const auto row = [](const char* name, const char* first, const char* second,
                      const QByteArray& html, const QByteArray& text) {
    QTest::newRow(name) << QByteArray(first) << QByteArray(second) << html << text;
  };
  row("cut after the escape nothing is lost", "\x1B", "[31mx", normal(1), "x");
  row("cut after the introducer a digit takes its place", "\x1B[", "31mx", bold(7), "x");
  row("cut before the last digit it is the introducer", "\x1B[3", "1mx", resetSpan, "x");
  row("cut before the m the parameters are lost", "\x1B[31", "mx", "", "x");
  row("cut after a semicolon the next digit is the introducer", "\x1B[9;", "131mx", normal(1), "x");
  row("cut inside an index the rest is a code", "\x1B[38;5;1", "931mx", normal(1), "x");
  row("any byte resumes, also one of text", "\x1B[31", "You 31mx", resetSpan, "x");
  row("an empty read keeps waiting", "\x1B", "", "", "");
}

void TstAnsiTranslator::resumesWithNothingRead() {
  QFETCH(QByteArray, first);
  QFETCH(QByteArray, second);
  QFETCH(QByteArray, html);
  QFETCH(QByteArray, text);
  Reader reader;
  QCOMPARE(reader.read(first), QByteArray());
  QVERIFY(reader.translator.escapePending());
  QCOMPARE(reader.read(second), html);
  QCOMPARE(reader.text, text);
  QCOMPARE(reader.translator.escapePending(), second.isEmpty());
}

void TstAnsiTranslator::remembersTheForegroundForBold() {
  Reader reader;
  QCOMPARE(reader.read("\x1B[38;5;1m\x1B[1m"), foreground("#800000"));
  QVERIFY(reader.translator.boldActive());
  reader.translator.clearBold();
  QVERIFY(!reader.translator.boldActive());
  QCOMPARE(reader.read("\x1B[33m"), normal(3));
  QCOMPARE(reader.read("\x1B[1m"), bold(3));
  QCOMPARE(reader.translator.currentSpan(), normal(3));
}

void TstAnsiTranslator::rebuildingReturnsToTheResetColours() {
  Reader reader;
  reader.read("\x1B[1m\x1B[38;5;1m\x1B[");
  reader.translator.buildColourSpans(boldColours, normalColours);
  QCOMPARE(reader.translator.currentSpan(),
           QByteArray("<span style=\"color:#ffffff;background-color:#333333\">"));
  QVERIFY(reader.translator.boldActive());
  QVERIFY(reader.translator.escapePending());
  // The foreground is white again, and normal and bold colours have been swapped.
  QCOMPARE(reader.read("m\x1B[1m"), normal(7));
  QCOMPARE(reader.read("\x1B[41m"), background(boldColours.at(1)));
}

void TstAnsiTranslator::equalColourTextsAreStillDifferentColours() {
  AnsiTranslator::ColourTexts same;
  same.fill("#123456");
  Reader reader;
  reader.translator.buildColourSpans(same, boldColours);
  QCOMPARE(reader.read("\x1B[32m\x1B[1m"), foreground("#123456") + bold(2));
  // A palette colour is not the current span even if its text is the same.
  same.fill("#800000");
  reader.translator.buildColourSpans(same, boldColours);
  QCOMPARE(reader.read("\x1B[38;5;1m\x1B[1m"), foreground("#800000"));
}

void TstAnsiTranslator::spansOfNormalColours() {
  Reader reader;
  for (int k = 0; k < 8; ++k)
    QCOMPARE(reader.translator.normalSpan(k), normal(static_cast<std::size_t>(k)));
  QCOMPARE(reader.translator.normalSpan(AnsiTranslator::white), foreground("#bdbdbd"));
}

void TstAnsiTranslator::nothingIsOpenedBeforeTheColoursAreKnown() {
  AnsiTranslator translator;
  QCOMPARE(translator.currentSpan(), QByteArray());
  HtmlSpans spans;
  qsizetype index = 0;
  translator.translateEscape(index, "\x1B[1;31m", spans, AnsiTranslator::Colours::Shown);
  QVERIFY(spans.html.isEmpty());
  QCOMPARE(index, 6);
}

void TstAnsiTranslator::hostileSequencesTakeLinearTime_data() {
  QTest::addColumn<QByteArray>("data");
  constexpr qsizetype size = 2'000'000;
  QTest::newRow("a sequence of a million parameters")
      << "\x1B[" + QByteArray("1;").repeated(size / 2) + "m";
  QTest::newRow("a sequence of two million digits") << "\x1B[" + QByteArray(size, '1') + "m";
  QTest::newRow("an index of two million digits") << "\x1B[38;5;" + QByteArray(size, '1') + "m";
  QTest::newRow("a marker that never comes") << "\x1B[38;" + QByteArray(size, '5') + "m";
  QTest::newRow("half a million sequences") << QByteArray("\x1B[1m").repeated(size / 4);
}

void TstAnsiTranslator::hostileSequencesTakeLinearTime() {
  QFETCH(QByteArray, data);
  Reader reader;
  ProcessorClock timer;
  timer.start();
  reader.read(data);
  QVERIFY2(timer.elapsed() < 10000, "not linear");
  QVERIFY(!reader.translator.escapePending());
}

KELMORA_TEST_MAIN(TstAnsiTranslator)
#include "tst_ansitranslator.moc"
