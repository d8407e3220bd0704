#include <QApplication>
#include <QTest>
#include <QTextBrowser>
#include <functional>

#include "IdleHost.h"
#include "PaneHtml.h"
#include "PipelineSupport.h"
#include "support/LogLines.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/core/Log.h"
#include "terminal/markup/Log.h"
#include "terminal/markup/SafeMarkup.h"
#include "terminal/session/SessionCapture.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"
#include "terminal/view/PaneDocument.h"
#include "terminal/view/PaneQueue.h"

using namespace kelmora;
using namespace kelmora::terminal;

using Act = std::function<void(OutputWidget&)>;
Q_DECLARE_METATYPE(Act)

/// What the pane drops or refuses is in the log for whoever switches it on, without any
/// text of the server.
class TestPaneLog : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void isSilentUnlessSwitchedOn();
  void tellsWhatIsLost_data();
  void tellsWhatIsLost();
  void tellsWhichTagsAreNotShown_data();
  void tellsWhichTagsAreNotShown();
  void tellsOfTextThatIsDroppedUnseen();
  void tellsOfParagraphsThatAreTooFarUp();
};

void TestPaneLog::isSilentUnlessSwitchedOn() {
  QVERIFY(!paneLog().isDebugEnabled());
  QVERIFY(!paneLog().isInfoEnabled());
  QVERIFY(!paneLog().isWarningEnabled());
  QVERIFY(!paneLog().isCriticalEnabled());
  QVERIFY(!markupLog().isCriticalEnabled());
}

void TestPaneLog::tellsWhatIsLost_data() {
  QTest::addColumn<Act>("act");
  QTest::addColumn<QStringList>("lines");
  QTest::newRow("a file that the document asks for")
      << Act([](OutputWidget& pane) { (void)pane.loadResource(2, QUrl("secret")); })
      << QStringList{"a file or picture refused"};
  QTest::newRow("a link within the client")
      << Act([](OutputWidget& pane) { pane.setSource(QUrl("secret")); })
      << QStringList{"a link was not followed, as it does not lead out of the client"};
  QTest::newRow("a session that cannot be saved") << Act([](OutputWidget& pane) {
    (void)captureSession(*settled(pane).document(), "#000000", "nowhere/secret.html");
  }) << QStringList{"the session was not saved"};
  QTest::newRow("a session that the file cannot hold") << Act([](OutputWidget& pane) {
    pane.printInfo(QStringLiteral("\u20ac \u00e9 \u20ac"));
    (void)captureSession(*settled(pane).document(), "#000000", "session.html");
  }) << QStringList{"characters of the session saved as question marks: 2"};
  QTest::newRow("a session that it can hold") << Act([](OutputWidget& pane) {
    pane.printInfo(QStringLiteral("\u00e9"));
    (void)captureSession(*settled(pane).document(), "#000000", "session.html");
  }) << QStringList{};
}

void TestPaneLog::tellsWhatIsLost() {
  QFETCH(const Act, act);
  IdleHost host;
  QWidget window;
  OutputWidget pane(*new InputWidget(host, &window), &window);
  const LogLines log("kelmora.pane");
  act(pane);
  pane.settle();
  QTEST(log.lines(), "lines");
}

void TestPaneLog::tellsWhichTagsAreNotShown_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<QStringList>("lines");
  QTest::newRow("tags that are not allowed")
      << "<secret>a<img src=secret>" << QStringList{"tags left out: 2"};
  QTest::newRow("colours that are nested too deep")
      << QString("<b>").repeated(130) + "x" << QStringList{"tags left out, nested too deep: 2"};
  QTest::newRow("blocks that are nested too deep")
      << QString("<div>").repeated(33) + "x" << QStringList{"tags left out, nested too deep: 1"};
  QTest::newRow("a link to a file")
      << "<a href=\"file:///secret\">x</a>" << QStringList{"links refused: 1"};
  QTest::newRow("a style sheet") << "<style>secret</style>x"
                                 << QStringList{"titles, style sheets and scripts left out: 1"};
  QTest::newRow("an anchor without a target loses nothing")
      << "<a name=x>x</a><b>y</b>" << QStringList{};
}

void TestPaneLog::tellsWhichTagsAreNotShown() {
  QFETCH(const QString, html);
  const LogLines log("kelmora.markup");
  (void)safeMarkup(html);
  QTEST(log.lines(), "lines");
}

void TestPaneLog::tellsOfTextThatIsDroppedUnseen() {
  IdleHost host;
  QWidget window;
  OutputWidget pane(*new InputWidget(host, &window), &window);
  const LogLines log("kelmora.pane");
  for (int i = 0; i < 752; ++i)
    pane.printInfo("told");
  QCOMPARE(log.lines(), QStringList());
  for (int i = 0; i < 10; ++i)
    pane.printInfo("told");
  QVERIFY(!log.lines().isEmpty());
  for (const QString& line : log.lines())
    QVERIFY2(line.startsWith("text dropped unseen, as newer text fills the pane, bytes: "),
             qPrintable(line));
}

void TestPaneLog::tellsOfParagraphsThatAreTooFarUp() {
  QTextBrowser view;
  PaneDocument document(view, {.tallest = 100});
  view.resize(400, 300);
  view.show();
  PaneQueue queue(750, {});
  queue.add(PaneText(PlainText{QStringLiteral("told\n").repeated(30), Qt::white, Qt::black}));
  const LogLines log("kelmora.pane");
  document.write(queue, QDeadlineTimer(QDeadlineTimer::Forever));
  QCOMPARE(log.lines().size(), 1);
  QCOMPARE(log.lines().first(), "paragraphs dropped, as the text is too tall: " +
                                    QString::number(31 - view.document()->blockCount()));
}

KELMORA_GUI_TEST_MAIN(TestPaneLog)
#include "tst_panelog.moc"
