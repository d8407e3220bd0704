#include <QApplication>
#include <QTest>
#include <random>

#include "PaneHtml.h"
#include "PipelineSupport.h"
#include "TwoPanes.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// Random reads of a server and random actions of a player.
class Stream {
 public:
  explicit Stream(unsigned seed) : engine_(seed) {}

  void play(TwoPanes& panes) {
    panes.begin(pick(8) ? normalColours : namedColours);
    const PipelineOptions options{.displayAnsiColor = pick(8) != 0,
                                  .playBeeps = false,
                                  .parseHtml = pick(4) == 0,
                                  .displayURLs = pick(3) != 0};
    const int longRead = pick(64) == 0 ? 400 : 12;
    for (int write = 1 + pick(5); write > 0; --write) {
      if (pick(3) != 0)
        panes.read(bytes(1 + pick(longRead)), options);
      else
        message(panes);
      if (pick(4) == 0)
        panes.quick.settle();
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
                                             "\x1C",
                                             "\x1D",
                                             "\x1E",
                                             "\x1F",
                                             "\x7F",
                                             "\xC2\x85",
                                             "\xE2\x80\x80",
                                             "\xE2\x80",
                                             "\x83",
                                             "\xA9",
                                             "\r",
                                             "\xC3\r\xA9",
                                             "\xE2\a\x98\x83",
                                             "w\rww.a.example",
                                             "http:/\r/b.example",
                                             "&\r#32;",
                                             "\x1B"
                                             "m",
                                             "\x1B[9m",
                                             " \r ",
                                             "Http://c.example and",
                                             "https://d.example\t",
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

  void message(TwoPanes& panes) {
    const QString text = QString::fromUtf8(bytes(pick(4)));
    const auto both = [&panes](auto write) {
      write(panes.quick);
      write(panes.literal);
    };
    switch (pick(5)) {
      case 0:
        both([&](auto& pane) { appendStatusLine(pane, "<i>" + text + "</i>"); });
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

}  // namespace

/// The pane's document always equals that of a pane into which each text is inserted
/// at once by the toolkit.
class TestPaneComparison : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void randomStreams();
  void formatsAreForgottenWithoutATrace();
  void aSessionOfEndlessLinksKeepsFewFormats();

 private:
  TwoPanes panes_;
};

void TestPaneComparison::randomStreams() {
  // An environment variable asks for more; 300,000 take a minute or two.
  bool given = false;
  const int asked = qEnvironmentVariableIntValue("KELMORA_STREAMS", &given);
  const int streams = given ? asked : 20000;
  int beyondTheLimit = 0;
  for (int seed = 1; seed <= streams; ++seed) {
    Stream(static_cast<unsigned>(seed)).play(panes_);
    // Once paragraphs are dropped, both panes may have dropped different ones.
    if (panes_.literal.document()->blockCount() >= OutputWidget::limits.paragraphs) {
      ++beyondTheLimit;
      continue;
    }
    const QString difference = panes_.difference();
    QVERIFY2(difference.isEmpty(),
             qPrintable(QStringLiteral("stream %1, ").arg(seed) + difference));
  }
  QVERIFY(beyondTheLimit * 100 <= streams);
}

void TestPaneComparison::formatsAreForgottenWithoutATrace() {
  panes_.begin();
  // All these formats are in use, in paragraphs of every kind.
  const int links = static_cast<int>(3 * OutputWidget::limits.formats) + 1000;
  const auto link = [](int number) {
    return QStringLiteral("<a href=\"http://a.example/%1\">%1</a> ").arg(number);
  };
  for (int i = 0; i < links; ++i) {
    insertServerHtml(panes_.quick, link(i));
    insertServerHtml(panes_.literal, link(i));
    if (i % 40 == 0) {
      panes_.quick.printInfo(QStringLiteral("message"));
      panes_.literal.printInfo(QStringLiteral("message"));
    } else if (i % 93 == 0) {
      appendStatusLine(panes_.quick, QStringLiteral("<i>status</i>"));
      appendStatusLine(panes_.literal, QStringLiteral("<i>status</i>"));
    }
    if (i % 100 == 0)
      panes_.quick.settle();
  }
  panes_.quick.settle();
  const QTextDocument* const old = panes_.quick.document();
  QTRY_VERIFY(panes_.quick.document() != old);
  QVERIFY(panes_.literal.document()->blockCount() < OutputWidget::limits.paragraphs);
  QCOMPARE(panes_.difference(), QString());
}

void TestPaneComparison::aSessionOfEndlessLinksKeepsFewFormats() {
  // A document that never had other formats.
  TwoPanes panes;
  const auto formats = [&panes] { return panes.quick.document()->allFormats().size(); };
  // Links come quickly until the document begins to be copied. From then on they come
  // as slowly as the lines of a game, so that copying gets its turns even on a busy
  // machine.
  qsizetype left = 0;
  int renewals = 0;
  for (int i = 0; i < 50000; ++i) {
    const QTextDocument* const old = panes.quick.document();
    insertServerHtml(panes.quick, QStringLiteral("<a href=\"http://a.example/%1\">x</a>").arg(i));
    panes.quick.printInfo(QStringLiteral("message"));
    const bool isRenewing = formats() > 2 * left + OutputWidget::limits.formats;
    if (isRenewing || i % 10 == 0) {
      panes.quick.settle();
      QTest::qWait(isRenewing ? frameLength : 0);
    }
    if (panes.quick.document() != old) {
      ++renewals;
      left = formats();
    }
    // In the worst case each turn has copied a single paragraph.
    QVERIFY2(
        formats() < 2 * left + OutputWidget::limits.formats + 2 * OutputWidget::limits.paragraphs,
        qPrintable(QString::number(formats())));
  }
  QVERIFY(renewals > 1);
  QVERIFY(left < 3 * OutputWidget::limits.paragraphs);
  QCOMPARE(settled(panes.quick).document()->blockCount(), OutputWidget::limits.paragraphs);
}

KELMORA_GUI_TEST_MAIN(TestPaneComparison)
#include "tst_panecomparison.moc"
