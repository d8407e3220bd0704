#include <QApplication>
#include <QFile>
#include <QScrollBar>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

#include "IdleHost.h"
#include "PaneContent.h"
#include "PaneHtml.h"
#include "support/ScratchMain.h"
#include "terminal/session/SessionCapture.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// Saves a pane's document as a web page.
class TestSessionCapture : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void startsWithTheBodyAndHoldsTheWholeDocument();
  void anOldFileIsReplaced();
  void charactersOutsideLatin1AreQuestionMarks();
  void aLongSessionIsWrittenWhole();
  void aFileThatCannotBeOpenedIsNone();
  void theFileIsOfTheEncodingItNames();
  void thePaneStaysAsItWas();

 private:
  static QByteArray captured(const QTextDocument& document) {
    if (!captureSession(document, "#123456", "session.html"))
      return "(none)";
    QFile file("session.html");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
  }
};

void TestSessionCapture::startsWithTheBodyAndHoldsTheWholeDocument() {
  QTextDocument document;
  document.setHtml("<span style=\"color:#ff0000\">red</span> and plain");
  const QByteArray page = captured(document);
  QCOMPARE(page, "<body bgcolor=\"#123456\">" + document.toHtml().toLatin1());
  QVERIFY(page.contains("<!DOCTYPE"));
}

void TestSessionCapture::anOldFileIsReplaced() {
  QFile file("session.html");
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(QByteArray(100000, 'x'));
  file.close();
  QVERIFY(!captured(QTextDocument()).contains("xxx"));
}

void TestSessionCapture::charactersOutsideLatin1AreQuestionMarks() {
  QTextDocument document(QString::fromUtf8("gr\u00fcn \u20ac"));
  const QByteArray page = captured(document);
  QVERIFY(page.contains(QString::fromUtf8("gr\u00fcn ?").toUtf8()));
  QVERIFY(!page.contains(QString::fromUtf8("\u20ac").toUtf8()));
}

void TestSessionCapture::aLongSessionIsWrittenWhole() {
  QTextDocument document;
  QTextCursor cursor(&document);
  for (int i = 0; i < 5000; ++i)
    cursor.insertText(QStringLiteral("line %1 of many\n").arg(i));
  const QByteArray page = captured(document);
  QVERIFY(page.size() > 100000);
  QVERIFY(page.contains("line 0 of many"));
  QVERIFY(page.contains("line 4999 of many"));
  QVERIFY(page.endsWith("</body></html>") || page.endsWith("</body></html>\n"));
}

void TestSessionCapture::aFileThatCannotBeOpenedIsNone() {
  QVERIFY(!captureSession(QTextDocument(), "#000000", "nowhere/session.html"));
  QVERIFY(!captureSession(QTextDocument(), "#000000", "."));
}

void TestSessionCapture::theFileIsOfTheEncodingItNames() {
  QTextDocument document(QString::fromUtf8("gr\u00fcn"));
  const QByteArray page = captured(document);
  QVERIFY(page.contains("charset=utf-8") || page.contains("charset=\"utf-8\""));
  QVERIFY(page.contains("gr\xC3\xBCn"));
}

void TestSessionCapture::thePaneStaysAsItWas() {
  IdleHost host;
  QWidget window;
  OutputWidget pane(*new InputWidget(host, &window), &window);
  pane.setGeometry(0, 0, 400, 300);
  window.show();
  for (int i = 0; i < 100; ++i)
    insertServerHtml(
        pane, QStringLiteral("<b>line</b> <a href=\"http://a.example\">%1</a><br>\n").arg(i));
  appendStatusLine(pane, "<i>status</i>");
  pane.settle();
  QTextCursor selection(pane.document());
  selection.setPosition(10);
  selection.setPosition(20, QTextCursor::KeepAnchor);
  pane.setTextCursor(selection);
  pane.verticalScrollBar()->setValue(33);
  const PaneContent before = PaneContent::of(*pane.document());
  const bool modified = pane.document()->isModified();
  QVERIFY(captured(*pane.document()).contains("status"));
  QCOMPARE(PaneContent::of(*pane.document()).differenceTo(before), QString());
  QCOMPARE(pane.document()->isModified(), modified);
  QCOMPARE(pane.textCursor().anchor(), 10);
  QCOMPARE(pane.textCursor().position(), 20);
  QCOMPARE(pane.verticalScrollBar()->value(), 33);
  // If a file cannot be written, nothing changes either.
  QVERIFY(!captureSession(*pane.document(), "#000000", "nowhere/session.html"));
  QCOMPARE(PaneContent::of(*pane.document()).differenceTo(before), QString());
}

KELMORA_GUI_TEST_MAIN(TestSessionCapture)
#include "tst_sessioncapture.moc"
