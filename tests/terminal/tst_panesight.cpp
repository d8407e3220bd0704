#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QWheelEvent>
#include <random>

#include "IdleHost.h"
#include "LayoutContents.h"
#include "PaneHtml.h"
#include "PictureCompare.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/layout/PaneLayout.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// A proportional font: no height is certain before the text is broken into lines.
QFont proportional() {
  return layout_contents::fonts()[1].font;
}

int blocksWithLines(const QTextDocument& document) {
  int count = 0;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    count += block.layout()->lineCount() > 0 ? 1 : 0;
  return count;
}

/// Whether two colours differ by more than a shade: the toolkit paints large letters
/// in a slightly different shade the first time.
bool differs(QRgb a, QRgb b) {
  constexpr int shade = 40;
  return std::abs(qRed(a) - qRed(b)) > shade || std::abs(qGreen(a) - qGreen(b)) > shade ||
         std::abs(qBlue(a) - qBlue(b)) > shade;
}

/// How much of a screen differs from what it should show, in pixels.
int differentPixels(const QImage& expected, const QImage& found) {
  if (expected.size() != found.size())
    return expected.width() * expected.height();
  int count = 0;
  for (int y = 0; y < found.height(); ++y)
    for (int x = 0; x < found.width(); ++x)
      count += differs(found.pixel(x, y), expected.pixel(x, y)) ? 1 : 0;
  return count;
}

}  // namespace

/// What a player sees stays where it is, and only changed parts are painted.
class TestPaneSight : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void theScreenShowsWhatAFreshPaintWould();
  void aLineMovesWithTheWheelThroughWhatWasAnEstimate();
  void aLineMovesAsFarAsTheBarThroughWhatWasAnEstimate();
  void aReaderIsNotMovedByWhatIsLaidOutWhenIdle();
  void theCharacterAtTheTopStaysWhileTheWindowIsDragged();
  void whatIsOutOfSightKeepsNoLines();
  void idleWorkComesToAnEnd();
  void anEndIsAnEndInSizesOfAllKinds_data();
  void anEndIsAnEndInSizesOfAllKinds();
  void aPaneMayGoWithTextWaiting();
  void othersMayChangeTheDocument();

 private:
  /// Paragraphs of some lines, of which one more than the last.
  void fill(int paragraphs) {
    QString words;
    for (int i = 0; i < paragraphs; ++i) {
      words += QStringLiteral("You see %1 lamps; WMW iiilll. ").arg(i);
      if (i % 9 == 8)
        words.clear();
      pane_->printText(words, Qt::white);
    }
    pane_->settle();
    QCoreApplication::processEvents();
  }
  /// What is on the screen, without painting anything.
  [[nodiscard]] QImage screen() {
    const QPixmap all = window_->screen()->grabWindow(window_->winId());
    const QPoint corner = pane_->viewport()->mapTo(window_, QPoint(0, 0));
    return all.copy(QRect(corner, pane_->viewport()->size()))
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
  }
  [[nodiscard]] QTextCursor inTheMiddle() const {
    return pane_->cursorForPosition({5, pane_->viewport()->height() / 2});
  }
  void change(std::mt19937& engine, QString& told);

  IdleHost host_;
  QWidget* window_ = nullptr;
  OutputWidget* pane_ = nullptr;
};

void TestPaneSight::init() {
  window_ = new QWidget;
  auto* const bar = new InputWidget(host_, window_);
  bar->hide();
  pane_ = new OutputWidget(*bar, window_);
  QPalette palette = pane_->palette();
  palette.setColor(QPalette::Base, Qt::black);
  palette.setColor(QPalette::Text, Qt::white);
  pane_->setPalette(palette);
  pane_->setFont(proportional());
  window_->resize(900, 700);
  pane_->setGeometry(0, 0, 400, 300);
  window_->show();
  QCoreApplication::processEvents();
}

void TestPaneSight::cleanup() {
  delete window_;
}

void TestPaneSight::change(std::mt19937& engine, QString& told) {
  const auto pick = [&engine](int count) {
    return static_cast<int>(engine() % static_cast<unsigned>(count));
  };
  const int kind = pick(16);
  told += QStringLiteral(" %1").arg(kind);
  const auto words = [&pick] {
    QString text;
    for (int count = pick(30); count >= 0; --count)
      text += pick(9) ? QStringLiteral("lamp%1 ").arg(pick(500)) : QStringLiteral("<br>");
    return text;
  };
  QScrollBar& down = *pane_->verticalScrollBar();
  QScrollBar& right = *pane_->horizontalScrollBar();
  switch (kind) {
    case 0:
    case 1:
    case 2:
      return insertServerHtml(*pane_, words());
    case 3:
      return pane_->printInfo(QStringLiteral("told %1").arg(pick(1000)));
    case 4:
      return appendStatusLine(*pane_, QStringLiteral("<i>%1</i>").arg(words()));
    case 5:
      return insertServerHtml(
          *pane_, QStringLiteral("<nobr>%1</nobr>").arg(QString(60, u'w') + words() + words()));
    case 6:
      return insertServerHtml(*pane_, QStringLiteral("<center>%1</center>").arg(words()));
    case 7:
      return insertServerHtml(
          *pane_, QStringLiteral("<font size=%1>%2</font>שלום ").arg(1 + pick(7)).arg(words()));
    case 8:
    case 9:
      return down.setValue(down.value() - 200 + pick(400));
    case 10:
      return down.setValue(pick(down.maximum() + 1));
    case 11:
      return right.setValue(pick(right.maximum() + 1));
    case 12:
      return pane_->resize(300 + pick(300), 200 + pick(200));
    case 13: {
      QTextCursor cursor(settled(*pane_).document());
      cursor.setPosition(pick(pane_->document()->characterCount()));
      cursor.setPosition(pick(pane_->document()->characterCount()), QTextCursor::KeepAnchor);
      return pane_->setTextCursor(cursor);
    }
    case 14: {
      if (pick(3) > 0)
        return;
      const auto fonts = layout_contents::fonts();
      return pane_->setFont(fonts[static_cast<std::size_t>(pick(4))].font);
    }
    default:
      return insertServerHtml(*pane_,
                              QStringLiteral("<ol><li>%1<li>%2</ol>").arg(words(), words()));
  }
}

void TestPaneSight::theScreenShowsWhatAFreshPaintWould() {
  bool given = false;
  const int asked = qEnvironmentVariableIntValue("KELMORA_PAGES", &given);
  const int first = std::max(1, qEnvironmentVariableIntValue("KELMORA_FIRST_PAGE"));
  const int pages = given ? asked : 15;
  for (int seed = first; seed < first + pages; ++seed) {
    cleanup();
    init();
    std::mt19937 engine(static_cast<unsigned>(seed));
    QString told;
    fill(static_cast<int>(engine() % 60));
    for (int turn = 0; turn < 40; ++turn) {
      for (auto changes = engine() % 3; changes < 3; ++changes)
        change(engine, told);
      if (engine() % 3 > 0)
        pane_->settle();
      if (engine() % 20 == 0)
        QTest::qWait(120);  // idle
      for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
      const QImage found = screen();
      const QImage expected = pictureOf(*pane_->viewport());
      // The toolkit leaves single pixels of old letters.
      constexpr int fewPixels = 30;
      if (differentPixels(expected, found) > fewPixels)
        QFAIL(qPrintable(QStringLiteral("page %1, turn %2: ").arg(seed).arg(turn) +
                         pictureDifference(expected, found) + " after" + told));
      told += u'.';
    }
  }
}

void TestPaneSight::aLineMovesWithTheWheelThroughWhatWasAnEstimate() {
  fill(400);
  QScrollBar& bar = *pane_->verticalScrollBar();
  int turns = 0;
  for (; turns < 400 && bar.value() > 200; ++turns) {
    const QTextCursor line = inTheMiddle();
    const int before = pane_->cursorRect(line).top();
    const QPointF place = pane_->viewport()->rect().center();
    const int step = bar.value();
    QWheelEvent wheel(place, pane_->viewport()->mapToGlobal(place), {}, {0, 120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(pane_->viewport(), &wheel);
    const int moved = step - bar.value();
    QVERIFY(moved > 0);
    QCoreApplication::processEvents();
    QCOMPARE(pane_->cursorRect(line).top(), before + moved);
  }
  QVERIFY(turns > 50);
}

void TestPaneSight::aLineMovesAsFarAsTheBarThroughWhatWasAnEstimate() {
  fill(400);
  QScrollBar& bar = *pane_->verticalScrollBar();
  std::mt19937 engine(1);
  for (int jump = 0; jump < 30; ++jump) {
    bar.setValue(static_cast<int>(engine() % static_cast<unsigned>(bar.maximum())));
    QCoreApplication::processEvents();
    for (int step = 0; step < 20; ++step) {
      const int before = bar.value();
      const QTextCursor line = inTheMiddle();
      const int top = pane_->cursorRect(line).top();
      bar.setValue(before + static_cast<int>(engine() % 280) - 140);
      const int moved = before - bar.value();
      QCoreApplication::processEvents();
      if (bar.value() == 0 || bar.value() == bar.maximum())
        break;
      QCOMPARE(pane_->cursorRect(line).top(), top + moved);
      const QImage found = screen();
      const QImage expected = pictureOf(*pane_->viewport());
      QVERIFY2(differentPixels(expected, found) < 30,
               qPrintable(pictureDifference(expected, found)));
    }
  }
}

void TestPaneSight::aReaderIsNotMovedByWhatIsLaidOutWhenIdle() {
  fill(700);
  QScrollBar& bar = *pane_->verticalScrollBar();
  bar.setValue(bar.maximum() / 2);
  QCoreApplication::processEvents();
  const int height = bar.maximum();
  const QTextCursor line = inTheMiddle();
  const int top = pane_->cursorRect(line).top();
  const QImage before = screen();
  for (int i = 0; i < 60; ++i) {
    QTest::qWait(10);
    QCOMPARE(pane_->cursorRect(line).top(), top);
  }
  QVERIFY(bar.maximum() != height);  // or nothing was laid out
  QCOMPARE(differentPixels(screen(), before), 0);
}

void TestPaneSight::theCharacterAtTheTopStaysWhileTheWindowIsDragged() {
  fill(400);
  QScrollBar& bar = *pane_->verticalScrollBar();
  bar.setValue(bar.maximum() / 2);
  QCoreApplication::processEvents();
  const int width = pane_->width();
  const auto top = [this] { return pane_->cursorForPosition({0, 0}).position(); };
  const int character = top();
  for (int to = width; to > 150; to -= 7) {
    pane_->resize(to, pane_->height());
    QCoreApplication::processEvents();
    const QTextCursor first = pane_->cursorForPosition({0, 0});
    QTextCursor last = first;
    last.movePosition(QTextCursor::EndOfLine);
    QVERIFY(first.position() <= character && character <= last.position());
  }
  pane_->resize(width, pane_->height());
  QCoreApplication::processEvents();
  QCOMPARE(top(), character);
}

void TestPaneSight::whatIsOutOfSightKeepsNoLines() {
  fill(700);
  QScrollBar& bar = *pane_->verticalScrollBar();
  const int inSight = blocksWithLines(*pane_->document());
  for (int value = bar.maximum(); value > 0; value -= 290) {
    bar.setValue(value);
    QCoreApplication::processEvents();
    // A little more than three screens of paragraphs.
    QVERIFY2(blocksWithLines(*pane_->document()) < 3 * 40 + 17,
             qPrintable(QString::number(blocksWithLines(*pane_->document()))));
  }
  QVERIFY(inSight < 3 * 40 + 17);
}

void TestPaneSight::idleWorkComesToAnEnd() {
  QTextBrowser browser;
  auto* const layout = new PaneLayout(*browser.document());
  browser.document()->setDocumentLayout(layout);
  browser.setFont(proportional());
  browser.resize(300, 200);
  PaneSight sight(browser);
  browser.show();
  for (int i = 0; i < 200; ++i)
    browser.append(QStringLiteral("some words of a line, WMW iii ").repeated(i % 20));
  int turns = 0;
  while (turns < 10'000 && sight.refine(1))
    ++turns;
  QVERIFY(turns > 0 && turns < 2'000);
  QVERIFY(!sight.refine(1));
  QVERIFY(blocksWithLines(*browser.document()) < 60);
  // Everything was laid out, and the heights are right.
  const QSizeF size = layout->documentSize();
  QVERIFY(!layout->layOut(0, 1e9));
  QCOMPARE(layout->documentSize(), size);
  QCOMPARE(browser.verticalScrollBar()->value(), browser.verticalScrollBar()->maximum());
}

void TestPaneSight::anEndIsAnEndInSizesOfAllKinds_data() {
  QTest::addColumn<QSize>("size");
  QTest::addColumn<int>("points");
  QTest::addColumn<Qt::LayoutDirection>("direction");
  for (const int points : {7, 200})
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft})
      for (const QSize& size : {QSize(0, 0), QSize(1, 1), QSize(1, 300), QSize(300, 1),
                                QSize(30, 30), QSize(3000, 20), QSize(30, 2000)})
        QTest::addRow("%dx%d, %d points, %s", size.width(), size.height(), points,
                      direction == Qt::LeftToRight ? "left to right" : "right to left")
            << size << points << direction;
}

void TestPaneSight::anEndIsAnEndInSizesOfAllKinds() {
  QFETCH(const QSize, size);
  QFETCH(const int, points);
  QFETCH(const Qt::LayoutDirection, direction);
  window_->setLayoutDirection(direction);
  pane_->setFont(QFont(pane_->font().family(), points));
  fill(60);
  QScrollBar& bar = *pane_->verticalScrollBar();
  for (const QSize& next : {size, QSize(400, 300), size}) {
    pane_->resize(next);
    QCoreApplication::processEvents();
    QCOMPARE(bar.value(), bar.maximum());
    insertServerHtml(*pane_, QStringLiteral("more <ol><li>of it</ol><hr>"));
    pane_->settle();
    QCoreApplication::processEvents();
    QCOMPARE(bar.value(), bar.maximum());
    window_->hide();
    insertServerHtml(*pane_, QStringLiteral("unseen "));
    pane_->settle();
    window_->show();
    QCoreApplication::processEvents();
    QCOMPARE(bar.value(), bar.maximum());
    bar.setValue(bar.maximum() / 3);
    QCoreApplication::processEvents();
    bar.setValue(bar.maximum());
    QCoreApplication::processEvents();
  }
  pane_->resize(400, 300);
  QTextCursor end(pane_->document());
  end.movePosition(QTextCursor::End);
  QVERIFY(pane_->cursorRect(end).top() < pane_->viewport()->height());
  QVERIFY(pane_->cursorRect(end).bottom() > 0);
}

void TestPaneSight::aPaneMayGoWithTextWaiting() {
  fill(100);
  for (int i = 0; i < 6000; ++i)
    insertServerHtml(*pane_, QStringLiteral("<a href=\"http://a.example/%1\">x</a> ").arg(i));
  pane_->settle();
  QCoreApplication::processEvents();
  insertServerHtml(*pane_, QString(500'000, u'x'));
  QVERIFY(!pane_->settled());
  delete pane_;
  pane_ = nullptr;
  QTest::qWait(150);
}

void TestPaneSight::othersMayChangeTheDocument() {
  std::mt19937 engine(7);
  fill(50);
  for (int i = 0; i < 200; ++i) {
    insertServerHtml(*pane_, QStringLiteral("some text<br>"));
    switch (engine() % 6) {
      case 0:
        pane_->clear();
        break;
      case 1:
        pane_->setHtml(QStringLiteral("<ul><li>one<li>two</ul>").repeated(20));
        break;
      case 2:
        pane_->setPlainText(QStringLiteral("line\n").repeated(100));
        break;
      case 3:
        pane_->settle();
        break;
      case 4: {
        QTextCursor cursor(pane_->document());
        const auto count = static_cast<unsigned>(pane_->document()->characterCount());
        cursor.setPosition(static_cast<int>(engine() % count));
        cursor.setPosition(static_cast<int>(engine() % count), QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        break;
      }
      default:
        QCoreApplication::processEvents();
    }
    const QImage expected = pictureOf(*pane_->viewport());
    QVERIFY(!expected.isNull());
  }
  pane_->settle();
  QVERIFY(pane_->toPlainText().endsWith(QStringLiteral("some text\n")));
}

KELMORA_GUI_TEST_MAIN(TestPaneSight)
#include "tst_panesight.moc"
