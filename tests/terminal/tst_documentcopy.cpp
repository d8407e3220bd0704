#include <QApplication>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <random>

#include "PaneContent.h"
#include "support/ScratchMain.h"
#include "terminal/view/DocumentCopy.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

using Engine = std::mt19937;

int pick(Engine& engine, int count) {
  return static_cast<int>(engine() % static_cast<unsigned>(count));
}

/// Appends a piece of one of the kinds of content that a pane gets.
void grow(QTextDocument& document, Engine& engine) {
  QTextCursor end(&document);
  end.movePosition(QTextCursor::End);
  const QString words = QStringLiteral("lamp %1").arg(engine() % 1000);
  switch (pick(engine, 9)) {
    case 0:
      return end.insertHtml(QStringLiteral("<ul><li>%1<li>two</ul>").arg(words));
    case 1:
      return end.insertHtml(QStringLiteral("<ol start=7><li>%1<ol><li>in it</ol></ol>").arg(words));
    case 2:
      return end.insertHtml(QStringLiteral("<center>%1</center>").arg(words));
    case 3:
      return end.insertHtml(QStringLiteral("<a href=\"http://a/%1\">x</a><br>").arg(engine()));
    case 4:
      return end.insertHtml(QStringLiteral("<hr><h2>%1</h2><p></p>").arg(words));
    case 5:
      return end.insertHtml(QStringLiteral("<b>%1</b> <font size=6>big</font>").arg(words));
    case 6:
      end.insertBlock();
      return;
    case 7:
      end.insertBlock({}, {});
      return end.insertText(words + QChar::LineSeparator + words + u'\n');
    default:
      return end.insertText(words + u'\n');
  }
}

/// Copies all of a document, and appends to it between the steps so many times.
std::unique_ptr<QTextDocument> copyOf(QTextDocument& document, Engine& engine, int growths) {
  DocumentCopy copy(document);
  int steps = 0;
  // A step of 0 milliseconds would copy nothing, so 1 is the shortest step.
  while (!copy.advance(1) || growths > 0) {
    if (++steps > 100'000)
      return nullptr;
    for (int i = pick(engine, 4); growths > 0 && i >= 0; --i, --growths)
      grow(document, engine);
  }
  return std::move(copy).take();
}

}  // namespace

/// A copy equals its document, except that it has no unused formats.
class TestDocumentCopy : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aCopyIsEqualHoweverItsDocumentGrew();
  void onlyFormatsInUseAreCopied();
  void settingsAreCopied();
};

void TestDocumentCopy::aCopyIsEqualHoweverItsDocumentGrew() {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    Engine engine(seed);
    QTextDocument document;
    document.setMaximumBlockCount(engine() % 3 ? 20 + pick(engine, 60) : 0);
    for (int pieces = pick(engine, 120); pieces > 0; --pieces)
      grow(document, engine);
    const auto copy = copyOf(document, engine, engine() % 3 ? pick(engine, 200) : 0);
    QVERIFY(copy);
    const QString difference = PaneContent::of(*copy).differenceTo(PaneContent::of(document));
    QVERIFY2(difference.isEmpty(), qPrintable(QString::number(seed) + ": " + difference));
    QCOMPARE(copy->toHtml(), document.toHtml());
    // Text that is appended later looks the same in both.
    Engine other = engine;
    for (int i = 0; i < 30; ++i) {
      grow(document, engine);
      grow(*copy, other);
    }
    QCOMPARE(copy->toHtml(), document.toHtml());
  }
}

void TestDocumentCopy::onlyFormatsInUseAreCopied() {
  Engine engine(1);
  QTextDocument document;
  document.setMaximumBlockCount(10);
  for (int i = 0; i < 2000; ++i)
    grow(document, engine);
  QVERIFY(document.allFormats().size() > 150);
  const auto copy = copyOf(document, engine, 0);
  QVERIFY(copy);
  QVERIFY2(copy->allFormats().size() < 60, qPrintable(QString::number(copy->allFormats().size())));
}

void TestDocumentCopy::settingsAreCopied() {
  QTextDocument document(QStringLiteral("text"));
  document.setMaximumBlockCount(7);
  document.setDefaultFont(QFont("Ubuntu", 19));
  document.setDefaultStyleSheet(QStringLiteral("a { color: #6fa8ff }"));
  document.setDocumentMargin(9);
  document.setIndentWidth(11);
  QTextOption option;
  option.setWrapMode(QTextOption::WordWrap);
  document.setDefaultTextOption(option);
  Engine engine(1);
  const auto copy = copyOf(document, engine, 0);
  QCOMPARE(copy->maximumBlockCount(), 7);
  QCOMPARE(copy->defaultFont(), document.defaultFont());
  QCOMPARE(copy->defaultStyleSheet(), document.defaultStyleSheet());
  QCOMPARE(copy->documentMargin(), 9.0);
  QCOMPARE(copy->indentWidth(), 11.0);
  QCOMPARE(copy->defaultTextOption().wrapMode(), QTextOption::WordWrap);
  QVERIFY(!copy->isUndoRedoEnabled());
}

KELMORA_GUI_TEST_MAIN(TestDocumentCopy)
#include "tst_documentcopy.moc"
