#include "BrowserActions.h"
#include "LayoutCompare.h"
#include "support/ScratchMain.h"

using namespace browser_actions;
using namespace layout_contents;

namespace {

using Act = std::function<QString(QTextBrowser&)>;

/// A page with something of each kind, and with links in its visible part.
void writeStory(QTextBrowser& browser) {
  insertText(browser, "You stand in a long and winding hall whose walls are hung with banners.\n");
  insertHtml(browser,
             "To <a href=\"http://a.example/b\">a place</a> or to <a "
             "href=\"mailto:x@y\">somebody</a>, that is the question<h2>A lamp</h2>"
             "<ul><li>oil<li>and <a href=\"http://a.example/2\">a wick</a></ul>");
  appendStatus(browser, "<i>Connected.</i>");
  insertText(browser, QString::fromUtf8("\nYou hear שלום from the north, and مرحبا too.\n"));
  for (int i = 0; i < 40; ++i)
    insertText(browser, QStringLiteral("line %1 of it, and a lamp%2")
                            .arg(i)
                            .arg(i % 5 ? QChar(QChar::LineSeparator) : QChar('\n')));
  insertHtml(browser, "<hr><pre>kept  as it is</pre><a href=\"http://a.example/3\">the end</a>");
  placeCaret(browser, 0);
}

/// Fills many pages, of which only the visible paragraphs have to be laid out.
void writeManyParagraphs(QTextBrowser& browser) {
  QString text;
  for (int i = 0; i < 1000; ++i)
    text += QStringLiteral("paragraph %1 ").arg(i) +
            QString(i * 37 % 211, 'x').replace("xxx", "xx ") + '\n';
  insertText(browser, text);
  placeCaret(browser, 0);
}

int laidOut(const QTextDocument& document) {
  int count = 0;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    count += block.layout()->lineCount() > 0 ? 1 : 0;
  return count;
}

void activate(QTextBrowser& browser) {
  browser.activateWindow();
  browser.setFocus();
  QVERIFY(QTest::qWaitForWindowActive(&browser));
}

}  // namespace

/// A browser with the pane's layout reacts to keys and the mouse exactly like one with
/// the toolkit's layout.
class TestPaneLayoutBrowser : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QApplication::setCursorFlashTime(0); }
  void actions_data();
  void actions();
  void whatChangedIsPaintedAnew_data();
  void whatChangedIsPaintedAnew();
  void onlyWhatIsInSightIsLaidOut();
  void whatIsFoundFarAwayIsInSight();
  void aPointOfAnEstimatedPageIsWhereItsTextIs();
  void aRangeIsLaidOutWhole();
};

void TestPaneLayoutBrowser::actions_data() {
  QTest::addColumn<Act>("act");
  QTest::addColumn<QString>("among");
  for (const auto& all : {mouseActions(), keyActions(), programActions()})
    for (const Action& action : all)
      QTest::newRow(action.name) << action.act << QString::fromLatin1(action.among);
}

void TestPaneLayoutBrowser::actions() {
  QFETCH(const Act, act);
  QFETCH(const QString, among);
  TwoLayouts two(fonts().front().font);
  two.both(writeStory);
  two.show();
  QVERIFY(two.settle());
  QCOMPARE(two.found.verticalScrollBar()->value(), two.expected.verticalScrollBar()->value());
  QStringList seen;
  std::vector<QImage> pictures;
  for (QTextBrowser* browser : {&two.expected, &two.found}) {
    activate(*browser);
    seen += act(*browser);
    QVERIFY(two.settle());
    // A widget with the keyboard focus may be painted differently.
    (void)pictureOf(*browser);
    pictures.push_back(pictureOf(*browser));
  }
  QVERIFY2(seen.front().contains(among), qPrintable(seen.front()));
  COMPARE_LAYOUTS(layout_compare::ofTexts(seen.front(), seen.back()));
  COMPARE_LAYOUTS(pictureDifference(pictures.front(), pictures.back()));
  COMPARE_LAYOUTS(layout_compare::ofNumbers(two, 300));
}

void TestPaneLayoutBrowser::whatChangedIsPaintedAnew_data() {
  QTest::addColumn<Act>("act");
  const auto row = [](const char* name, const Act& act) { QTest::newRow(name) << act; };
  const auto select = [](QTextBrowser& browser, int from, int to) {
    QTextCursor cursor(browser.document());
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    browser.setTextCursor(cursor);
    return QString();
  };
  row("a selection comes", [=](auto& browser) { return select(browser, 10, 130); });
  row("a selection grows and shrinks", [=](auto& browser) {
    for (const int to : {130, 40, 90, 20})
      (void)select(browser, 10, to);
    return QString();
  });
  row("a word comes in the middle", [](auto& browser) {
    QTextCursor cursor(browser.document());
    cursor.setPosition(20);
    cursor.insertText("and more and more and more of it ");
    return QString();
  });
  row("paragraphs go at the top", [](auto& browser) {
    browser.document()->setMaximumBlockCount(browser.document()->blockCount() - 2);
    return QString();
  });
  row("a letter changes its colour", [](auto& browser) {
    QTextCursor cursor = browser.document()->find("banners");
    QTextCharFormat format;
    format.setForeground(Qt::red);
    cursor.mergeCharFormat(format);
    return QString();
  });
  row("a paragraph moves to the right", [](auto& browser) {
    QTextCursor cursor = browser.document()->find("banners");
    QTextBlockFormat format;
    format.setAlignment(Qt::AlignRight);
    cursor.mergeBlockFormat(format);
    return QString();
  });
  row("a list grows", [](auto& browser) {
    QTextCursor cursor = browser.document()->find("oil");
    cursor.insertText("\n\n");
    return QString();
  });
  row("text comes at the end, in sight", [](auto& browser) {
    scrollTo(browser, 1);
    insertText(browser, " and more\nand more");
    appendStatus(browser, "<i>status</i>");
    return QString();
  });
}

void TestPaneLayoutBrowser::whatChangedIsPaintedAnew() {
  QFETCH(const Act, act);
  TwoLayouts two(fonts().front().font);
  two.both(writeStory);
  two.show();
  QVERIFY(two.settle());
  const QImage before = pictureOf(two.expected);
  two.both(act);
  COMPARE_LAYOUTS(layout_compare::ofScreens(two));
  QVERIFY(two.settle());
  COMPARE_LAYOUTS(layout_compare::ofScreens(two));
  QVERIFY(pictureOf(two.expected) != before);
}

void TestPaneLayoutBrowser::onlyWhatIsInSightIsLaidOut() {
  TwoLayouts two(fonts().front().font);
  writeManyParagraphs(two.found);
  two.found.show();
  QCoreApplication::processEvents();
  const int first = laidOut(*two.found.document());
  QVERIFY2(first > 0 && first < 200, qPrintable(QString::number(first)));
  two.found.resize(200, 300);
  (void)pictureOf(two.found);
  scrollTo(two.found, 0.5);
  (void)pictureOf(two.found);
  const int then = laidOut(*two.found.document());
  QVERIFY2(then > 0 && then < 400, qPrintable(QString::number(then)));
}

void TestPaneLayoutBrowser::whatIsFoundFarAwayIsInSight() {
  TwoLayouts two(fonts().front().font);
  writeManyParagraphs(two.found);
  two.found.show();
  for (const int number : {900, 400, 999, 3}) {
    two.found.moveCursor(QTextCursor::Start);
    QVERIFY(two.found.find(QStringLiteral("paragraph %1 ").arg(number)));
    (void)pictureOf(two.found);
    QCoreApplication::processEvents();
    const QRect caret = two.found.cursorRect();
    QVERIFY2(two.found.viewport()->rect().contains(caret), qPrintable(layout_compare::told(caret)));
    QCOMPARE(two.found.cursorForPosition(caret.center()).block(), two.found.textCursor().block());
  }
}

void TestPaneLayoutBrowser::aPointOfAnEstimatedPageIsWhereItsTextIs() {
  TwoLayouts two(fonts().front().font);
  writeManyParagraphs(two.found);
  two.found.show();
  for (const double part : {0.5, 0.9, 0.1, 1.0, 0.33}) {
    scrollTo(two.found, part);
    (void)pictureOf(two.found);
    for (int y = 20; y < two.found.viewport()->height() - 20; y += 13) {
      const QTextCursor under = two.found.cursorForPosition({40, y});
      const QRect caret = two.found.cursorRect(under);
      QVERIFY2(caret.top() <= y && y <= caret.bottom() + 1,
               qPrintable(QStringLiteral("%1 is not in ").arg(y) + layout_compare::told(caret)));
    }
  }
}

void TestPaneLayoutBrowser::aRangeIsLaidOutWhole() {
  TwoLayouts two(fonts().front().font);
  two.both(writeManyParagraphs);
  two.show();
  const QAbstractTextDocumentLayout& layout = *two.found.document()->documentLayout();
  for (const int top : {5000, 12000, 3000, 0}) {
    int changes = 0;
    for (; changes < 20; ++changes) {
      const qreal height = layout.documentSize().height();
      const bool changed = layOut(two.found, top, top + 1000);
      QVERIFY(changed || layout.documentSize().height() == height);
      if (!changed)
        break;
    }
    QVERIFY(changes < 20);
    int laidOutThere = 0;
    for (int y = top; y < top + 1000; y += 5) {
      const int position = layout.hitTest(QPointF(20, y), Qt::FuzzyHit);
      const QTextBlock block = two.found.document()->findBlock(position);
      const QTextBlock same = two.expected.document()->findBlock(position);
      QVERIFY(block.layout()->lineCount() > 0);
      QCOMPARE(layout.blockBoundingRect(block).size(),
               two.expected.document()->documentLayout()->blockBoundingRect(same).size());
      ++laidOutThere;
    }
    QCOMPARE(laidOutThere, 200);
  }
  const int all = laidOut(*two.found.document());
  QVERIFY2(all < 900, qPrintable(QString::number(all)));
}

KELMORA_GUI_TEST_MAIN(TestPaneLayoutBrowser)
#include "tst_panelayout_browser.moc"
