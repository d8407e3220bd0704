#include <QAccessible>
#include <QApplication>
#include <QTest>

#include "LayoutContents.h"
#include "TwoLayouts.h"
#include "support/ScratchMain.h"

/// What a screen reader is told that goes through the pane by lines and words.
class TestReadPane : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void piecesAreThoseOfTheToolkit_data();
  void piecesAreThoseOfTheToolkit();
  void onlyWhatIsAskedForIsLaidOut();
};

namespace {

constexpr int paragraphs = 300;

QString tale() {
  QString text;
  for (int i = 1; i <= paragraphs; ++i)
    text += QStringLiteral("Paragraph %1 goes on for longer than a line has room.\n").arg(i);
  return text;
}

QAccessibleTextInterface* textOf(QTextBrowser& browser) {
  QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(&browser);
  return reader ? reader->textInterface() : nullptr;
}

/// The pieces around an offset, before it and behind it, each with its place.
QStringList piecesAt(QTextBrowser& browser, int offset, QAccessible::TextBoundaryType boundary) {
  const QAccessibleTextInterface& text = *textOf(browser);
  QStringList told;
  int start = 0;
  int end = 0;
  const auto add = [&](const QString& piece) {
    told << QStringLiteral("%1 %2 %3").arg(start).arg(end).arg(piece);
  };
  add(text.textAtOffset(offset, boundary, &start, &end));
  add(text.textBeforeOffset(offset, boundary, &start, &end));
  add(text.textAfterOffset(offset, boundary, &start, &end));
  return told;
}

int laidOut(const QTextBrowser& browser) {
  int count = 0;
  for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next())
    count += block.layout()->lineCount() > 0 ? 1 : 0;
  return count;
}

}  // namespace

void TestReadPane::piecesAreThoseOfTheToolkit_data() {
  QTest::addColumn<int>("boundary");
  QTest::newRow("characters") << static_cast<int>(QAccessible::CharBoundary);
  QTest::newRow("words") << static_cast<int>(QAccessible::WordBoundary);
  QTest::newRow("lines") << static_cast<int>(QAccessible::LineBoundary);
  QTest::newRow("paragraphs") << static_cast<int>(QAccessible::ParagraphBoundary);
}

void TestReadPane::piecesAreThoseOfTheToolkit() {
  QFETCH(const int, boundary);
  TwoLayouts two(layout_contents::fonts().front().font);
  two.both([](QTextBrowser& browser) { layout_contents::insertText(browser, tale()); });
  two.show();
  QVERIFY(textOf(two.found));
  const int length = textOf(two.expected)->characterCount();
  QCOMPARE(textOf(two.found)->characterCount(), length);
  const auto kind = static_cast<QAccessible::TextBoundaryType>(boundary);
  for (int offset = 61; offset < length; offset += 61)
    QCOMPARE(piecesAt(two.found, offset, kind), piecesAt(two.expected, offset, kind));
}

void TestReadPane::onlyWhatIsAskedForIsLaidOut() {
  TwoLayouts two(layout_contents::fonts().front().font);
  layout_contents::insertText(two.found, tale());
  two.found.show();
  QVERIFY(QTest::qWaitForWindowExposed(&two.found));
  const int before = laidOut(two.found);
  const QAccessibleTextInterface& text = *textOf(two.found);
  int start = 0;
  int end = 0;
  constexpr int questions = 5;
  for (int i = 0; i < questions; ++i) {
    const int offset = 1000 + 2000 * i;
    const QString line = text.textAtOffset(offset, QAccessible::LineBoundary, &start, &end);
    QVERIFY2(!line.isEmpty() && start <= offset && offset <= end, qPrintable(line));
    (void)text.characterRect(offset);
    (void)text.text(0, text.characterCount());
  }
  // Each question takes its paragraph and, at the border of two, both.
  QVERIFY2(laidOut(two.found) <= before + 2 * questions, qPrintable(QString::number(before)));
  QVERIFY(before < paragraphs / 4);
}

KELMORA_GUI_TEST_MAIN(TestReadPane)
#include "tst_readpane.moc"
