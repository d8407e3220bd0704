#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "IdleHost.h"
#include "PaneContent.h"
#include "PaneHtml.h"
#include "PipelineSupport.h"
#include "TwoPanes.h"
#include "support/LiteralPane.h"
#include "support/LogLines.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/markup/SafeMarkup.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

ServerText serverText(const QByteArray& bytes) {
  PipelineOptions options = plainText;
  options.displayURLs = true;
  Client client;
  client.read(bytes, options);
  return client.host.texts.first();
}

QByteArray numberedLine(int number) {
  return "line-" + QByteArray::number(number) + QByteArray(70, '.') + "\n";
}

}  // namespace

/// What the pane does when more text arrives than it can show.
class TestPaneFlood : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void aSingleTextAppearsInTheNextTurn();
  void muchTextLeavesTheLoopItsTurns();
  void readingTheDocumentEmptiesTheQueue();
  void ofAFloodTheNewestParagraphsStay();
  void aFloodLeavesWhatOneByOneInsertionLeaves();
  void plainTextBehindAFloodGoesOnInItsLook();
  void plainTextTakesItsLookFromWhatItFollows_data();
  void plainTextTakesItsLookFromWhatItFollows();
  void noTextThatShowsShortLinesIsDropped_data();
  void noTextThatShowsShortLinesIsDropped();
  void aFloodOfEchoIsOverAtOnce();
  void anAlignmentOutlivesTheFloodBehindIt();
  void tagsAroundNothingAreNotHoardedWithoutEnd();
  void aRenewedDocumentIsTheSame();
  void aRenewalKeepsTheViewAndTheSelection();
  void formatsOutOfUseGoInAQuietMoment();
  void formatsInUseAreNoReasonForAnotherRenewal();

 private:
  /// Shows many reads without a turn of the event loop in between, as in a flood.
  void flood(int lines) {
    QByteArray read;
    for (int i = 0; i < lines; ++i) {
      read += numberedLine(i);
      if (read.size() > 16000)
        pane_->showServerText(serverText(std::exchange(read, {})));
    }
    pane_->showServerText(serverText(read));
  }
  void showLinks(int from, int count) {
    QString html;
    for (int i = from; i < from + count; ++i)
      html += QStringLiteral("<a href=\"http://a.example/%1\">x</a>").arg(i);
    insertServerHtml(*pane_, html + "<br>\n");
  }
  /// Inserts many links and removes them again; the document keeps their formats.
  void leaveUnusedFormats() {
    QTextCursor cursor(settled(*pane_).document());
    cursor.movePosition(QTextCursor::End);
    const int end = cursor.position();
    cursor.beginEditBlock();
    for (int i = 0; i <= OutputWidget::limits.formats; ++i) {
      QTextCharFormat format;
      format.setAnchorHref(QStringLiteral("http://b.example/%1").arg(i));
      cursor.insertText("x", format);
    }
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    cursor.endEditBlock();
  }
  [[nodiscard]] qsizetype formats() const { return pane_->document()->allFormats().size(); }

  IdleHost host_;
  std::unique_ptr<QWidget> window_;
  OutputWidget* pane_ = nullptr;
};

void TestPaneFlood::init() {
  window_ = std::make_unique<QWidget>();
  pane_ = new OutputWidget(*new InputWidget(host_, window_.get()), window_.get());
  pane_->setGeometry(0, 0, 700, 400);
  window_->show();
}

void TestPaneFlood::cleanup() {
  window_.reset();
}

void TestPaneFlood::aSingleTextAppearsInTheNextTurn() {
  pane_->showServerText(serverText("You see a lamp.\n"));
  QCOMPARE(pane_->toPlainText(), QString());
  QCoreApplication::processEvents();
  QVERIFY(pane_->toPlainText().startsWith("You see a lamp."));
}

void TestPaneFlood::muchTextLeavesTheLoopItsTurns() {
  // Text whose colour changes every few letters takes long to insert.
  for (int i = 0; i < 15000; ++i)
    pane_->showServerText(
        serverText(numberedLine(i).replace("....", "\x1B[32m..\x1B[31m..").append("end\n")));
  // Each turn takes some of it, and keys and paint come between them.
  QSet<QString> lastLines;
  for (QDeadlineTimer limit(30000); !pane_->settled() && !limit.hasExpired();) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    lastLines.insert(pane_->toPlainText().right(100));
  }
  QVERIFY(pane_->settled());
  QVERIFY2(lastLines.size() > 4, qPrintable(QString::number(lastLines.size())));
  QVERIFY(settled(*pane_).toPlainText().contains("line-14999."));
  QVERIFY(settled(*pane_).toPlainText().contains("line-0."));
}

void TestPaneFlood::readingTheDocumentEmptiesTheQueue() {
  flood(3000);
  QVERIFY(!pane_->toPlainText().contains("line-2999."));
  const QString text = settled(*pane_).toPlainText();
  QVERIFY(text.contains("line-2999."));
  QTest::qWait(2 * frameLength);
  QCOMPARE(pane_->toPlainText(), text);
}

void TestPaneFlood::ofAFloodTheNewestParagraphsStay() {
  constexpr int lines = 200000;
  flood(lines);
  const QString text = settled(*pane_).toPlainText();
  QCOMPARE(settled(*pane_).document()->blockCount(), OutputWidget::limits.paragraphs);
  QVERIFY(text.endsWith(QString::fromLatin1(numberedLine(lines - 1))));
  // The pane is full, and no line is missing.
  const QString first = text.section('\n', 1, 1);
  const int number = first.mid(5, first.indexOf('.') - 5).toInt();
  QVERIFY2(lines - number > 37400, qPrintable(first));
  QCOMPARE(text.count('\n'), lines - number + 1);
}

void TestPaneFlood::aFloodLeavesWhatOneByOneInsertionLeaves() {
  TwoPanes panes;
  const PipelineOptions options{.playBeeps = false, .parseHtml = false};
  QByteArray read;
  for (int i = 0; i < 60'000; ++i) {
    read += "\x1B[3" + QByteArray::number(i % 8) + "m" + numberedLine(i);
    if (i % 50 == 0)
      read += "\x1B[38;5;208mhttp://a.example/" + QByteArray::number(i) + " or so\n";
    if (read.size() > 500 + i % 40'000)
      panes.read(std::exchange(read, {}), options);
    if (i % 777 == 0) {
      panes.quick.echoSentText("look\r\n");
      panes.literal.echoSentText("look\r\n");
    }
  }
  QCOMPARE(panes.difference(), QString());
  QCOMPARE(settled(panes.quick).document()->blockCount(), OutputWidget::limits.paragraphs);
}

void TestPaneFlood::plainTextBehindAFloodGoesOnInItsLook() {
  LiteralPane literal(OutputWidget::limits.lengths.longParagraph,
                      OutputWidget::limits.lengths.longestParagraph);
  const auto both = [&](auto write) {
    write(*pane_);
    write(literal);
  };
  both([](auto& pane) { insertServerHtml(pane, "<i>slanted<br>\n</i><u>underlined</u>"); });
  for (int i = 0; i < 3000; ++i)
    both([](auto& pane) { pane.printInfo("told"); });
  QCOMPARE(settled(*pane_).document()->lastBlock().previous().begin().fragment().charFormat(),
           literal.document()->lastBlock().previous().begin().fragment().charFormat());
}

void TestPaneFlood::plainTextTakesItsLookFromWhatItFollows_data() {
  QTest::addColumn<QByteArrayList>("reads");
  QTest::newRow("a link and a line break of no link")
      << QByteArrayList{"see http://a.example/x", "\n"};
  QTest::newRow("underlined text and tags around nothing")
      << QByteArrayList{"<u>underlined", "<b></b>"};
  QTest::newRow("underlined text and a blank of another look") << QByteArrayList{"<u>a", " "};
  QTest::newRow("underlined text and an entity of nothing") << QByteArrayList{"<u>a", "&#0;"};
  QTest::newRow("underlined text and a colour") << QByteArrayList{"<u>a", "\x1B[31m"};
}

void TestPaneFlood::plainTextTakesItsLookFromWhatItFollows() {
  QFETCH(const QByteArrayList, reads);
  LiteralPane literal(OutputWidget::limits.lengths.longParagraph,
                      OutputWidget::limits.lengths.longestParagraph);
  Client client;
  LiteralPipeline rules;
  rules.buildColourSpans(normalColours, boldColours);
  PipelineOptions options = markup;
  options.displayURLs = true;
  for (const QByteArray& read : reads) {
    client.read(read, options);
    insertServerHtml(literal, rules.htmlOf(read, options));
    pane_->showServerText(client.host.texts.last());
  }
  for (int i = 0; i < 3000; ++i) {
    pane_->printInfo("told");
    literal.printInfo("told");
  }
  QCOMPARE(settled(*pane_).document()->lastBlock().previous().begin().fragment().charFormat(),
           literal.document()->lastBlock().previous().begin().fragment().charFormat());
}

void TestPaneFlood::noTextThatShowsShortLinesIsDropped_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::newRow("blanks between colours") << QByteArray("\x1B[41m \x1B[44m ").repeated(35) + "\n";
  QTest::newRow("an address that collapses") << QByteArray("www.").repeated(15) + "\n";
  QTest::newRow("wide blanks") << QByteArray("\xE3\x80\x80").repeated(70) + "\n";
}

void TestPaneFlood::noTextThatShowsShortLinesIsDropped() {
  QFETCH(const QByteArray, line);
  constexpr int lines = 30000;
  pane_->showServerText(serverText("first\n"));
  for (int i = 0; i < lines / 100; ++i)
    pane_->showServerText(serverText(line.repeated(100)));
  QVERIFY(settled(*pane_).document()->blockCount() < OutputWidget::limits.paragraphs);
  QVERIFY(settled(*pane_).toPlainText().startsWith("first\n"));
}

void TestPaneFlood::aFloodOfEchoIsOverAtOnce() {
  ProcessorClock timer;
  timer.start();
  for (int i = 0; i < 200000; ++i)
    pane_->echoSentText(QStringLiteral("echo %1\r\n").arg(i));
  const QString text = settled(*pane_).toPlainText();
  // Without the queue this took a minute on the same machine.
  QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
  QCOMPARE(text.count('\n'), OutputWidget::limits.paragraphs - 1);
  QVERIFY(text.startsWith("echo 199251\n"));
}

void TestPaneFlood::anAlignmentOutlivesTheFloodBehindIt() {
  insertServerHtml(*pane_, "<center>middle</center>");
  flood(100000);
  QCOMPARE(settled(*pane_).document()->lastBlock().blockFormat().alignment(), [] {
    LiteralPane literal(OutputWidget::limits.lengths.longParagraph,
                        OutputWidget::limits.lengths.longestParagraph);
    insertServerHtml(literal, "<center>middle</center>");
    insertServerHtml(literal, "text");
    return literal.document()->lastBlock().blockFormat().alignment();
  }());
}

void TestPaneFlood::tagsAroundNothingAreNotHoardedWithoutEnd() {
  const std::vector<SafeHtml> tags{safeMarkup(QStringLiteral("<b></b>").repeated(2000))};
  const LogLines log("kelmora.pane");
  for (int i = 0; i < 1500; ++i)
    pane_->showServerText(tags);
  // About forty megabytes came, so adding had to wait, and each time the queue was
  // hardly longer than its limit.
  QVERIFY(!log.lines().isEmpty());
  for (const QString& line : log.lines())
    QVERIFY2(line.section(' ', -1).toInt() < 35 * 1024 * 1024, qPrintable(line));
  // And no turn takes more of it than leaves keys their time.
  qint64 longest = 0;
  for (int turn = 0; turn < 20; ++turn) {
    ProcessorClock timer;
    timer.start();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    longest = std::max(longest, timer.elapsed());
    QTest::qSleep(frameLength);
  }
  QVERIFY2(longest < 150, qPrintable(QString::number(longest)));
}

void TestPaneFlood::aRenewedDocumentIsTheSame() {
  insertServerHtml(*pane_, "<ul><li>one<li>two</ul>");
  pane_->printError("wrong");
  appendStatusLine(*pane_, "<i>status</i>");
  for (int i = 0; i < 5; ++i)
    showLinks(i * 1000, 1000);
  const PaneContent before = PaneContent::of(*settled(*pane_).document());
  leaveUnusedFormats();
  const qsizetype many = formats();
  QVERIFY(many > OutputWidget::limits.formats);
  insertServerHtml(*pane_, "");
  (void)settled(*pane_).document();
  QTRY_VERIFY_WITH_TIMEOUT(formats() < many, 10000);
  QVERIFY(formats() < 5100);
  QCOMPARE(PaneContent::of(*settled(*pane_).document()).differenceTo(before), QString());
}

void TestPaneFlood::aRenewalKeepsTheViewAndTheSelection() {
  flood(500);
  for (int i = 0; i < 5; ++i)
    showLinks(i * 1000, 1000);
  QTextCursor selection(settled(*pane_).document());
  leaveUnusedFormats();
  const qsizetype many = formats();
  insertServerHtml(*pane_, "");
  (void)settled(*pane_).document();
  selection.setPosition(100);
  selection.setPosition(140, QTextCursor::KeepAnchor);
  pane_->setTextCursor(selection);
  pane_->verticalScrollBar()->setValue(300);
  const QString selected = selection.selectedText();
  QTRY_VERIFY_WITH_TIMEOUT(formats() < many, 10000);
  QCOMPARE(settled(*pane_).textCursor().selectedText(), selected);
  QCOMPARE(settled(*pane_).textCursor().anchor(), 100);
  QCOMPARE(pane_->verticalScrollBar()->value(), 300);
}

void TestPaneFlood::formatsOutOfUseGoInAQuietMoment() {
  for (int i = 0; i < 10; ++i)
    showLinks(i * 1000, 1000);
  pane_->settle();
  QTRY_VERIFY(pane_->document()->allFormats().size() > 9000);
  QTest::qWait(300);
  // There are too few formats to renew the document while text arrives, but now none
  // of them is in use any more.
  for (int i = 0; i < OutputWidget::limits.paragraphs; ++i)
    pane_->printInfo("told");
  pane_->settle();
  QTRY_VERIFY_WITH_TIMEOUT(pane_->document()->allFormats().size() < 100, 10000);
}

void TestPaneFlood::formatsInUseAreNoReasonForAnotherRenewal() {
  const auto show = [this](int from) {
    for (int i = 0; i < 5; ++i)
      showLinks(from + i * 1000, 1000);
    pane_->settle();
  };
  const QPointer<QTextDocument> first = pane_->document();
  show(0);
  QTRY_VERIFY(first != pane_->document());
  QVERIFY(!first);
  // Show as many links again; all of their formats are in use.
  const QTextDocument* const renewed = pane_->document();
  show(5000);
  QTest::qWait(500);
  QCOMPARE(pane_->document(), renewed);
}

KELMORA_GUI_TEST_MAIN(TestPaneFlood)
#include "tst_paneflood.moc"
