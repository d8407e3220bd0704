#include <QApplication>
#include <QFile>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

#include "support/ScratchMain.h"
#include "terminal/view/SessionCapture.h"

/// The pane's document as a web page.
class TestSessionCapture : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void startsWithTheBodyAndHoldsTheWholeDocument();
  void anOldFileIsReplaced();
  void charactersOutsideLatin1AreQuestionMarks();
  void aLongSessionIsWrittenWhole();
  void aFileThatCannotBeOpenedIsNone();

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

KELMORA_GUI_TEST_MAIN(TestSessionCapture)
#include "tst_sessioncapture.moc"
