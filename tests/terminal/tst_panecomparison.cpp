#include <QApplication>
#include <QTest>
#include <random>

#include "PipelineSupport.h"
#include "TwoPanes.h"
#include "support/ScratchMain.h"

namespace {

/// What a server may send and a player may do.
class Stream {
 public:
  explicit Stream(unsigned seed) : engine_(seed) {}

  template <typename Panes>
  void play(Panes& panes) {
    OutputPipeline pipeline;
    pipeline.translator().buildColourSpans(pick(8) ? normalColours : namedColours, boldColours);
    const PipelineOptions options{.displayAnsiColor = pick(8) != 0,
                                  .playBeeps = false,
                                  .parseHtml = pick(4) == 0,
                                  .displayURLs = pick(3) != 0};
    const int longRead = pick(64) == 0 ? 400 : 12;
    for (int write = 1 + pick(5); write > 0; --write) {
      if (pick(3) != 0)
        pipeline.readSocketData(bytes(1 + pick(longRead)), options, panes);
      else
        message(panes);
      if (pick(4) == 0)
        (void)panes.quick.document();
    }
  }

 private:
  static inline const AnsiTranslator::ColourTexts namedColours{
      "black", "red", "#060", "#666600", "rgb(0,0,99)", "", "#12345g", "#bdbdbd\"><b>"};

  int pick(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }

  QByteArray bytes(int pieces) {
    static const std::vector<QByteArray> common{"You see a lamp.",
                                                " ",
                                                "  ",
                                                "\r\n",
                                                "\n",
                                                "the",
                                                "north",
                                                "\x1B[0m",
                                                "\x1B[1m",
                                                "\x1B[31m",
                                                "\x1B[1;32m",
                                                "\x1B[44m",
                                                "\x1B[38;5;208m",
                                                "\x1B[48;5;19m",
                                                "x",
                                                "hp: 12/40",
                                                "http://a.example/b?c=d&e",
                                                "www.example",
                                                "www.",
                                                "https://",
                                                "https://b.example",
                                                "Tom & Jerry",
                                                ", ",
                                                "\t"};
    static const std::vector<QByteArray> odd{"&lt;",
                                             "&amp;",
                                             "&",
                                             "&#33;",
                                             "&#x41;",
                                             "&nbsp",
                                             "&copy;",
                                             "&#32",
                                             "&foo;",
                                             "&;",
                                             "&#;",
                                             "<b>",
                                             "</b>",
                                             "<i>bold</i>",
                                             "<",
                                             ">",
                                             "<100hp 20sp>",
                                             "<center>",
                                             "</center>",
                                             "<p>",
                                             "<br>",
                                             "<a href=\"http://x.example\">y</a>",
                                             "<span style=\"color:#ff0000\">",
                                             "</span>",
                                             "<font color=red>",
                                             "<h1>head</h1>",
                                             "<ul><li>one</ul>",
                                             "<pre>a  b\n c</pre>",
                                             "<hr>",
                                             "<space>",
                                             "<tab>",
                                             "<lt>",
                                             "\a",
                                             "\v",
                                             "\f",
                                             "\x1",
                                             "\xFF\xFB\x01",
                                             "\xC3\xA4",
                                             "\xC3",
                                             "\xF0\x9F\x98\x80",
                                             "\xE2\x80\xA8",
                                             "\xE2\x80\xA9",
                                             "\xEF\xBF\xBC",
                                             "\xEF\xB7\x90",
                                             "\xE3\x80\x80",
                                             "\xC2\xA0",
                                             "\xEF\xBB\xBF",
                                             "\x1B[",
                                             "\x1B[3",
                                             "1m",
                                             "m",
                                             "\x1B[38;5;",
                                             "\"",
                                             "'",
                                             "/",
                                             ">\n",
                                             "http://http://www.a",
                                             "httphttp://",
                                             "https://x&#32",
                                             "; ",
                                             "\xD7\xA9\xD7\x9C",
                                             "e\xCC\x81",
                                             "*_-+=%"};
    QByteArray made;
    for (; pieces > 0; --pieces) {
      const auto& from = pick(4) != 0 ? common : odd;
      made += from.at(static_cast<std::size_t>(pick(static_cast<int>(from.size()))));
    }
    if (pick(16) == 0)
      made += '\0';
    if (pick(200) == 0)
      made = made.repeated(5000 / static_cast<int>(made.size() + 1) + 1);
    return made;
  }

  template <typename Panes>
  void message(Panes& panes) {
    const QString text = QString::fromUtf8(bytes(pick(4)));
    const auto both = [&panes](auto write) {
      write(panes.quick);
      write(panes.literal);
    };
    switch (pick(5)) {
      case 0:
        both([&](auto& pane) { pane.appendStatusLine(safeMarkup("<i>" + text + "</i>")); });
        return;
      case 1:
        both([&](auto& pane) { pane.echoSentText(text + "\r\n"); });
        return;
      case 2: {
        const QColor colour = pick(2) ? QColor("#FF8000") : QColor();
        both([&](auto& pane) { pane.printText(text, colour); });
        return;
      }
      case 3:
        both([&](auto& pane) { pane.printError(text); });
        return;
      default:
        both([&](auto& pane) { pane.printInfo(text); });
    }
  }

  std::mt19937 engine_;
};

/// In place of the quick pane: counts what the queue would count.
class Counter {
 public:
  explicit Counter(qsizetype longParagraph) : count_(longParagraph) {}

  void showServerText(const ServerText& text) {
    if (text.tags == ServerText::Tags::OwnOnly)
      count_.addLines(text.plain);
    else
      (void)count_.addMarkup(safeMarkup(text.decoded()));
  }
  void appendStatusLine(const QString& html) {
    count_.addParagraphs(1);
    (void)count_.addMarkup(html);
  }
  void echoSentText(const QString& text) { count_.addParagraphs(text.count('\n')); }
  void printText(const QString& text, const QColor& /*colour*/) { echoSentText(text + '\n'); }
  void printError(const QString& text) { echoSentText(text + '\n'); }
  void printInfo(const QString& text) { echoSentText(text + '\n'); }
  [[nodiscard]] qint64 document() const { return count_.ended(); }

 private:
  ParagraphCount count_;
};

/// A count beside what it counts, with paragraphs so short that streams have
/// many.
struct CountedPane : PipelineHost {
  static constexpr qsizetype longParagraph = 24;

  void beep() override {}
  void showServerText(ServerText text) override {
    quick.showServerText(text);
    literal.insertServerHtml(safeMarkup(text.decoded()));
  }
  void parseVitals(const char* /*line*/) override {}
  void checkTriggers(const QByteArray& /*line*/) override {}

  Counter quick{longParagraph};
  LiteralPane literal{longParagraph, OutputWidget::longestParagraph};
};

}  // namespace

/// The quick pane shows what the plain way would, piece for piece.
class TestPaneComparison : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void randomStreams();
  void theCountNeverRunsAhead();
  void formatsAreForgottenWithoutATrace();
  void aSessionOfEndlessLinksKeepsFewFormats();

 private:
  TwoPanes panes_;
};

void TestPaneComparison::randomStreams() {
  // More of them when asked for: half a million take some minutes.
  bool given = false;
  const int asked = qEnvironmentVariableIntValue("KELMORA_STREAMS", &given);
  const int streams = given ? asked : 40000;
  int beyondTheLimit = 0;
  for (int seed = 1; seed <= streams; ++seed) {
    panes_.clear();
    Stream(static_cast<unsigned>(seed)).play(panes_);
    // Where paragraphs are dropped it is no longer the same ones in both.
    if (panes_.literal.document()->blockCount() >= OutputWidget::maximumParagraphs) {
      ++beyondTheLimit;
      continue;
    }
    const QString difference = panes_.difference();
    QVERIFY2(difference.isEmpty(),
             qPrintable(QStringLiteral("stream %1, ").arg(seed) + difference));
  }
  QVERIFY(beyondTheLimit * 100 <= streams);
}

void TestPaneComparison::theCountNeverRunsAhead() {
  qint64 counted = 0;
  for (unsigned seed = 1; seed <= 10000; ++seed) {
    CountedPane pane;
    // A status line is no paragraph of its own in an empty document.
    pane.quick.printInfo("begin");
    pane.literal.printInfo("begin");
    Stream stream(seed);
    for (int part = 0; part < 3; ++part)
      stream.play(pane);
    // The last paragraph has not ended.
    const int ended = pane.literal.document()->blockCount() - 1;
    if (ended + 1 >= OutputWidget::maximumParagraphs)
      continue;
    counted += pane.quick.document();
    QVERIFY2(
        pane.quick.document() <= ended,
        qPrintable(
            QStringLiteral("stream %1: %2 of %3").arg(seed).arg(pane.quick.document()).arg(ended)));
  }
  QVERIFY(counted > 10000);
}

void TestPaneComparison::formatsAreForgottenWithoutATrace() {
  panes_.clear();
  // All of them in use, in paragraphs of every kind.
  const int links = static_cast<int>(OutputWidget::tooManyFormats) + 1000;
  const auto link = [](int number) {
    return QStringLiteral("<a href=\"http://a.example/%1\">%1</a> ").arg(number);
  };
  for (int i = 0; i < links; ++i) {
    panes_.quick.insertServerHtml(link(i));
    panes_.literal.insertServerHtml(link(i));
    if (i % 40 == 0) {
      panes_.quick.printInfo(QStringLiteral("message"));
      panes_.literal.printInfo(QStringLiteral("message"));
    } else if (i % 93 == 0) {
      panes_.quick.appendStatusLine(QStringLiteral("<i>status</i>"));
      panes_.literal.appendStatusLine(QStringLiteral("<i>status</i>"));
    }
    if (i % 100 == 0)
      (void)panes_.quick.document();
  }
  QVERIFY(panes_.literal.document()->blockCount() < OutputWidget::maximumParagraphs);
  QCOMPARE(panes_.difference(), QString());
}

void TestPaneComparison::aSessionOfEndlessLinksKeepsFewFormats() {
  panes_.clear();
  for (int i = 0; i < 50000; ++i) {
    panes_.quick.insertServerHtml(QStringLiteral("<a href=\"http://a.example/%1\">x</a>").arg(i));
    panes_.quick.printInfo(QStringLiteral("message"));
    if (i % 100 == 0)
      (void)panes_.quick.document();
  }
  QTextDocument& document = *panes_.quick.document();
  QCOMPARE(document.blockCount(), OutputWidget::maximumParagraphs);
  QVERIFY2(document.allFormats().size() < 2 * OutputWidget::tooManyFormats,
           qPrintable(QString::number(document.allFormats().size())));
}

KELMORA_GUI_TEST_MAIN(TestPaneComparison)
#include "tst_panecomparison.moc"
