#include <QTest>
#include <random>

#include "PipelineSupport.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"
#include "terminal/core/CodeNumber.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

class Generator {
 public:
  explicit Generator(quint32 seed) : engine_(seed) {}

  int pick(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }

  AnsiTranslator::ColourTexts colours() {
    AnsiTranslator::ColourTexts texts;
    // Few different texts, so that some colours of a set are the same.
    for (QByteArray& text : texts)
      text = '#' + QByteArray::number(pick(4) * 111111);
    return texts;
  }

  PipelineOptions options() {
    return {.displayAnsiColor = pick(5) != 0,
            .playBeeps = pick(2) == 0,
            .parseHtml = pick(2) == 0,
            .displayURLs = pick(4) == 0};
  }

  QByteArray data() {
    QByteArray bytes;
    for (int pieces = pick(14); pieces > 0; --pieces)
      bytes += piece();
    return bytes;
  }

 private:
  QByteArray piece() {
    static const QList<QByteArray> pieces{
        "\x1B",    "\x1B[",    "m",          ";",          "[",
        "<",       ">",        "&#32;",      "www.",       "Www.",
        "http://", "https://", "Http://",    "Https://",   "\t",
        "\a",      "\xFF",     "\xFF\xFB",   "\r\n",       "\n",
        " ",       "  ",       "\xC3\xA9",   "\xE2\x98",   "\xC3",
        "\xA9",    "<space>",  "<tab>",      "<lt>",       "<gt>",
        "a.b/c",   "hp: [",    "x",          "-",          "+",
        "38;5;",   "48;5;",    "\x1B[38;5;", "\x1B[48;5;", "\x1B[1m",
        "\x1B[0m", "\x1B[m",   "\x1B[0;32m", "\x1B[294m",  "\xEF\xBB\xBF",
        "*",       "&nbsp;",   "2147483648", "256",        QByteArray(1, '\0')};
    switch (pick(8)) {
      case 0:
        return QByteArray::number(pick(300));
      case 1:
        return "\x1B[" + QByteArray::number(30 + pick(20)) + (pick(3) == 0 ? ";" : "m");
      case 2:
        return "\x1B[" + parameters() + 'm';
      case 3:
        return QByteArray(1, static_cast<char>(pick(256)));
      default:
        return pieces.at(pick(static_cast<int>(pieces.size())));
    }
  }

  QByteArray parameters() {
    // With the NUL at its end.
    static constexpr auto alphabet = QByteArrayView::fromArray("0123456789;;;; \t\v-+38485;x");
    QByteArray bytes;
    for (int left = pick(16); left > 0; --left)
      bytes += alphabet[pick(static_cast<int>(alphabet.size()))];
    return bytes;
  }

  std::mt19937 engine_;
};

/// Sends the same stream through both pipelines; says where they differ first.
QString compareStream(Generator& random, qint64& reads) {
  OutputPipeline quick;
  LiteralPipeline literal;
  RecordingHost host;
  const auto rebuild = [&] {
    const auto normal = random.colours();
    const auto bold = random.colours();
    quick.translator().buildColourSpans(normal, bold);
    literal.buildColourSpans(normal, bold);
  };
  rebuild();
  PipelineOptions options = random.options();
  const int count = 1 + random.pick(4);
  for (int k = 0; k <= count; ++k, ++reads) {
    // The last read turns bold on, which shows the foreground that is otherwise hidden.
    const bool last = k == count;
    const QByteArray data = last ? QByteArray("m\x1B[1m<x") : random.data();
    if (last)
      options.displayAnsiColor = true;
    host.events.clear();
    quick.readSocketData(data, options, host);
    const QList<Event> expected = expectedOf(literal, data, options);
    const AnsiTranslator& translator = quick.translator();
    if (host.events != expected || quick.insideTag() != literal.insideTag ||
        translator.escapePending() != literal.escapePending ||
        translator.boldActive() != literal.boldActive ||
        translator.currentSpan() != literal.currentSpan)
      return QStringLiteral("read %1 of %2: %3")
          .arg(k)
          .arg(count)
          .arg(QString::fromLatin1(data.toPercentEncoding()));
    if (random.pick(6) == 0)
      rebuild();
    if (random.pick(12) == 0) {
      quick.translator().clearBold();
      literal.clearBold();
    }
    if (random.pick(4) == 0)
      options = random.options();
  }
  return {};
}

}  // namespace

class TstPipelineComparison : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyReadIsAsTheRulesSay();
  void numbersAreReadAsTheWholeTextWouldBe();
  void longRunsOfAddressesAreAsTheRulesSay_data();
  void longRunsOfAddressesAreAsTheRulesSay();
};

void TstPipelineComparison::everyReadIsAsTheRulesSay() {
  constexpr quint32 seed = 20240609;
  constexpr int streams = 100000;
  Generator random(seed);
  qint64 reads = 0;
  for (int k = 0; k < streams; ++k) {
    const QString difference = compareStream(random, reads);
    if (!difference.isEmpty())
      QFAIL(qPrintable(QStringLiteral("stream %1, %2").arg(k).arg(difference)));
  }
  qInfo("%d streams in %lld reads, seed %u", streams, static_cast<long long>(reads), seed);
}

void TstPipelineComparison::numbersAreReadAsTheWholeTextWouldBe() {
  // With the NUL at its end.
  static constexpr auto alphabet = QByteArrayView::fromArray(" \t019-+x");
  constexpr int length = 6;
  int texts = 1;
  for (int k = 0; k < length; ++k)
    texts *= static_cast<int>(alphabet.size());
  for (int code = 0; code < texts; ++code) {
    CodeNumber number;
    QByteArray text;
    for (int rest = code, k = 0; k < length; ++k, rest /= static_cast<int>(alphabet.size())) {
      text += alphabet[rest % alphabet.size()];
      number.append(text.back());
      if (number.value() != text.toInt())
        QFAIL(text.toPercentEncoding().constData());
    }
  }
  for (const char* start : {"2147483647", "2147483648", "-2147483648", "-2147483649", "-2147483640",
                            "4294967290", "9223372036854775800", "-9223372036854775800",
                            "18446744073709551610", "0000000000000000000000"}) {
    CodeNumber number;
    QByteArray text;
    for (const char byte : QByteArray(start) + "9 ") {
      text += byte;
      number.append(byte);
      QCOMPARE(number.value(), text.toInt());
    }
  }
}

void TstPipelineComparison::longRunsOfAddressesAreAsTheRulesSay_data() {
  QTest::addColumn<QByteArray>("unit");
  for (const char* unit : {"www.", "http://", "https://", "http://https://", "https://http://",
                           "www.!", "http://a!", "ttp://", "a"})
    QTest::addRow("a megabyte of \"%s\"", unit) << QByteArray(unit);
}

void TstPipelineComparison::longRunsOfAddressesAreAsTheRulesSay() {
  QFETCH(QByteArray, unit);
  const QByteArray data = "http://" + unit.repeated(qsizetype{1024} * 1024 / unit.size()) + "<";
  OutputPipeline quick;
  LiteralPipeline literal;
  RecordingHost host;
  quick.translator().buildColourSpans(normalColours, boldColours);
  literal.buildColourSpans(normalColours, boldColours);
  ProcessorClock timer;
  timer.start();
  quick.readSocketData(data, {}, host);
  QVERIFY2(timer.elapsed() < 10000, "the links are not made in linear time");
  QVERIFY(host.events == expectedOf(literal, data, {}));
}

KELMORA_TEST_MAIN(TstPipelineComparison)
#include "tst_pipelinecomparison.moc"
