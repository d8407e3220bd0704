#include <QTest>
#include <algorithm>
#include <functional>
#include <random>
#include <utility>

#include "PipelineSupport.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// The results of all reads of a stream, joined.
struct Whole {
  QString text;      // without colours; HTML is not included
  QByteArray plain;  // pieces of different reads put end to end
};

Whole readInPieces(const QByteArray& stream, const QList<qsizetype>& cuts,
                   const PipelineOptions& options) {
  Client client;
  Whole whole;
  qsizetype start = 0;
  for (qsizetype end : cuts + QList<qsizetype>{stream.size()}) {
    client.read(stream.mid(start, end - start), options);
    if (const auto* text = std::get_if<StyledText>(&client.host.texts.last()))
      whole.text += text->text;
    whole.plain += client.host.lines().join('\n');
    start = end;
  }
  return whole;
}

class Generator {
 public:
  explicit Generator(quint32 seed) : engine_(seed) {}

  int pick(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }

  QByteArray stream(const QList<QByteArray>& pieces) {
    QByteArray bytes;
    for (int left = pick(40); left > 0; --left)
      bytes += pieces.at(pick(static_cast<int>(pieces.size())));
    return bytes;
  }

  QList<qsizetype> cuts(qsizetype size) {
    QList<qsizetype> made;
    for (int left = pick(6); left > 0; --left)
      made << pick(static_cast<int>(size) + 1);
    std::sort(made.begin(), made.end());
    return made;
  }

 private:
  std::mt19937 engine_;
};

/// A window that calls the pipeline again while it is being called by it.
class MeddlingHost : public RecordingHost {
 public:
  void beep() override {
    RecordingHost::beep();
    meddle(Event::Kind::Beep);
  }
  void showServerText(ServerText text) override {
    RecordingHost::showServerText(std::move(text));
    meddle(Event::Kind::Html);
  }
  void parseVitals(const char* line) override {
    RecordingHost::parseVitals(line);
    meddle(Event::Kind::Vitals);
  }
  void checkTriggers(const QByteArray& line) override {
    RecordingHost::checkTriggers(line);
    meddle(Event::Kind::Triggers);
  }

  Event::Kind when = Event::Kind::Triggers;
  std::function<void()> once;

 private:
  void meddle(Event::Kind kind) {
    if (kind != when || !once)
      return;
    const auto call = std::exchange(once, nullptr);
    call();
  }
};

}  // namespace

/// Rules that hold for every stream, also if the window calls the pipeline again.
class TstPipelineProperties : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void plainLinesDoNotDependOnColours();
  void textDoesNotDependOnCuts();
  void theWindowMayComeBack_data();
  void theWindowMayComeBack();
  void theWindowMayRebuildTheColours();
  void largeReadsTakeLinearTime_data();
  void largeReadsTakeLinearTime();
};

void TstPipelineProperties::plainLinesDoNotDependOnColours() {
  constexpr quint32 seed = 20240610;
  constexpr int streams = 5000;
  qInfo("%d streams, seed %u", streams, seed);
  Generator random(seed);
  const QList<QByteArray> text{"a", "b ", "<", ">", "\n", "\t", "\a", "\r", "hp: [", "\xC3\xA9"};
  const QList<QByteArray> colours{"\x1B[m",
                                  "\x1B[31m",
                                  "\x1B[1;38;5;7m",
                                  "\x1B[38;5;196m",
                                  "\x1B"
                                  "m",
                                  "\x1B[48;5;2m"};
  for (int k = 0; k < streams; ++k) {
    const QByteArray coloured = random.stream(text + colours);
    QByteArray bare = coloured;
    for (const QByteArray& colour : colours)
      bare.replace(colour, "");
    PipelineOptions options = markup;
    options.parseHtml = random.pick(2) == 0;
    Client shown;
    shown.read(coloured, options);
    Client none;
    none.read(bare, options);
    options.displayAnsiColor = false;
    Client stripped;
    stripped.read(coloured, options);
    QCOMPARE(shown.host.lines(), none.host.lines());
    QCOMPARE(stripped.host.lines(), none.host.lines());
    // With colours off, exactly the bare text is shown as well.
    QCOMPARE(stripped.shown(), none.shown());
  }
}

void TstPipelineProperties::textDoesNotDependOnCuts() {
  constexpr quint32 seed = 20240611;
  constexpr int streams = 20000;
  qInfo("%d streams, seed %u", streams, seed);
  Generator random(seed);
  // In this text each byte stands for itself, so that it can be cut anywhere.
  const QList<QByteArray> shown{"a", "b", ">", "\n", "\a", "\r", ";", "m", "[", "/", "w"};
  const QList<QByteArray> plain =
      shown + QList<QByteArray>{"<",     "\t",       " ",       "&#32;",    "&",
                                "www.a", "http://b", "<space>", "\xC3\xA9", "\xE2"};
  for (int k = 0; k < streams; ++k) {
    const PipelineOptions options{.displayAnsiColor = random.pick(2) == 0,
                                  .playBeeps = true,
                                  .parseHtml = random.pick(2) == 0,
                                  .displayURLs = false};
    const QByteArray shownStream = random.stream(shown);
    const Whole uncut = readInPieces(shownStream, {}, options);
    const Whole cut = readInPieces(shownStream, random.cuts(shownStream.size()), options);
    QCOMPARE(cut.text, uncut.text);
    QCOMPARE(cut.plain, uncut.plain);
    const QByteArray plainStream = random.stream(plain);
    QCOMPARE(readInPieces(plainStream, random.cuts(plainStream.size()), options).plain,
             readInPieces(plainStream, {}, options).plain);
  }
}

void TstPipelineProperties::theWindowMayComeBack_data() {
  QTest::addColumn<Event::Kind>("when");
  QTest::newRow("at the beep") << Event::Kind::Beep;
  QTest::newRow("when HTML is shown") << Event::Kind::Html;
  QTest::newRow("at the vitals") << Event::Kind::Vitals;
  QTest::newRow("at the triggers") << Event::Kind::Triggers;
}

void TstPipelineProperties::theWindowMayComeBack() {
  QFETCH(Event::Kind, when);
  Client client;
  MeddlingHost host;
  host.when = when;
  QByteArray data = "\aone\x1B[31m\ntwo";
  host.once = [&] {
    data.fill('!');
    client.pipeline.readSocketData("inner", plainText, host);
  };
  client.pipeline.readSocketData(data, plainText, host);
  QList<QByteArray> lines = host.lines();
  QCOMPARE(lines.removeAll("inner"), 1);
  QCOMPARE(lines, (QList<QByteArray>{"one", "two"}));
  const auto told = [](const QByteArray& html) { return toldOf(QString::fromUtf8(html), false); };
  const QList<QByteArray> all = host.all(Event::Kind::Html);
  QVERIFY(all.contains(told("<span style=\"color:#660000\">inner")));
  QVERIFY(all.contains(told(resetSpan + "one<span style=\"color:#660000\"><br>\ntwo")));
}

void TstPipelineProperties::theWindowMayRebuildTheColours() {
  Client client;
  MeddlingHost host;
  host.when = Event::Kind::Html;
  host.once = [&] { client.pipeline.translator().buildColourSpans(boldColours, normalColours); };
  client.pipeline.readSocketData("\x1B[31ma\nb", plainText, host);
  QCOMPARE(host.lines(), (QList<QByteArray>{"a", "b"}));
  client.read("c");
  QCOMPARE(client.shown(),
           client.shownOf("<span style=\"color:#ffffff;background-color:#333333\">c", {}));
}

void TstPipelineProperties::largeReadsTakeLinearTime_data() {
  QTest::addColumn<QByteArray>("unit");
  for (const char* unit :
       {"\n", "\t", " ", "<", "\a", "\xFF", "\x1B", "\x1B[", "a", "\xC3", "<tab>"})
    QTest::addRow("four megabytes of %s", QByteArray(unit).toPercentEncoding().constData())
        << QByteArray(unit);
  QTest::newRow("four megabytes of NUL") << QByteArray(1, '\0');
}

void TstPipelineProperties::largeReadsTakeLinearTime() {
  /// Only counts, so that the pipeline alone is timed.
  class CountingHost : public PipelineHost {
   public:
    void beep() override {}
    void showServerText(ServerText /*text*/) override { ++texts; }
    void parseVitals(const char*) override {}
    void checkTriggers(const QByteArray&) override { ++lines; }
    qsizetype texts = 0;
    qsizetype lines = 0;
  };
  QFETCH(QByteArray, unit);
  const QByteArray data = unit.repeated(4'000'000 / unit.size());
  Client client;
  CountingHost host;
  ProcessorClock timer;
  timer.start();
  client.pipeline.readSocketData(data, {}, host);
  QVERIFY2(timer.elapsed() < 10000, "not linear");
  QCOMPARE(host.texts, 1);
  QCOMPARE(host.lines, data.count('\n') + 1);
}

KELMORA_TEST_MAIN(TstPipelineProperties)
#include "tst_pipelineproperties.moc"
