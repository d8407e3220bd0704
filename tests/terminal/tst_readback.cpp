#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QWheelEvent>
#include <functional>

#include "IdleHost.h"
#include "LayoutContents.h"
#include "PaneHtml.h"
#include "PictureCompare.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/reading/ReadBackView.h"
#include "terminal/reading/SplitHandle.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

void turnWheel(QWidget& over, int steps, Qt::KeyboardModifiers modifiers = {}) {
  const QPointF place(20, 5);
  QWheelEvent wheel(place, over.mapToGlobal(place), {}, {0, 120 * steps}, Qt::NoButton, modifiers,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&over, &wheel);
}

/// So many links that a copy of the document takes its place.
void haveDocumentRenewed(OutputWidget& pane) {
  const QTextDocument* const before = pane.document();
  for (int i = 0; i < 9000; ++i)
    insertServerHtml(pane, QStringLiteral("<a href=\"http://a/%1\">%1</a>%2")
                               .arg(i % 3 ? i : 0)
                               .arg(i % 30 ? "" : "<br>"));
  pane.settle();
  QTRY_VERIFY_WITH_TIMEOUT(pane.document() != before, 20'000);
}

QString topLine(const QTextBrowser& view) {
  return view.cursorForPosition({5, 3}).block().text();
}

}  // namespace

/// Whoever reads back keeps the place while the game goes on below.
class TestReadBack : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void textOpensTheViewForWhoeverHasScrolledUp_data();
  void textOpensTheViewForWhoeverHasScrolledUp();
  void nothingOpens_data();
  void nothingOpens();
  void whatIsReadStaysWhereItIs_data();
  void whatIsReadStaysWhereItIs();
  void noPixelOfTheUpperPartMovesWhenItOpens();
  void comingDownToTheEndClosesIt();
  void aWheelAtItsTopIsNotForThePane();
  void escapeClosesItAndLeavesTheInput();
  void theBorderIsDragged();
  void theBorderIsMovedByKeys();
  void theTabKeyGoesFromTheTopDown();
  void theShareIsKept();
  void thePaneScrollsTheView_data();
  void thePaneScrollsTheView();
  void pageByPageOneGetsFurtherUp();
  void theWheelWithCtrlSizesTheLetters_data();
  void theWheelWithCtrlSizesTheLetters();
  void whereAllFitsItCloses();
  void whereAllFitsSinceTheScrollNothingOpens();
  void aSelectionInItStays_data();
  void aSelectionInItStays();
  void fromRightToLeftTheTextIsAtItsPlace();
  void aFloodIsHardlySlowerWhileItIsOpen();

 private:
  void say(int from, int count) {
    for (int i = from; i < from + count; ++i)
      pane_->printText(QStringLiteral("Line %1 of the story, with some words in it.").arg(i),
                       Qt::white);
    pane_->settle();
    QCoreApplication::processEvents();
  }
  [[nodiscard]] ReadBackView* view() const { return pane_->findChild<ReadBackView*>(); }
  [[nodiscard]] bool isOpen() const { return view() && view()->isVisible(); }
  [[nodiscard]] bool isPaneAtEnd() const {
    return pane_->verticalScrollBar()->value() == pane_->verticalScrollBar()->maximum();
  }
  void open() {
    turnWheel(*pane_->viewport(), 20);
    say(1000, 1);
  }
  void drag(int by) const {
    auto* const handle = pane_->findChild<SplitHandle*>();
    QTest::mousePress(handle, Qt::LeftButton, {}, {30, 2});
    QMouseEvent move(QEvent::MouseMove, QPointF(30, 2 + by),
                     handle->mapToGlobal(QPointF(30, 2 + by)), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(handle, &move);
    if (pane_->findChild<SplitHandle*>() == handle)
      QTest::mouseRelease(handle, Qt::LeftButton, {}, {30, 2});
  }

  IdleHost host_;
  QWidget* window_ = nullptr;
  InputWidget* bar_ = nullptr;
  OutputWidget* pane_ = nullptr;
};

void TestReadBack::init() {
  window_ = new QWidget;
  window_->resize(500, 440);
  bar_ = new InputWidget(host_, window_);
  bar_->setGeometry(0, 410, 500, 30);
  pane_ = new OutputWidget(*bar_, window_);
  QPalette palette = pane_->palette();
  palette.setColor(QPalette::Base, Qt::black);
  pane_->setPalette(palette);
  pane_->setFont(layout_contents::fonts()[0].font);
  pane_->setGeometry(0, 0, 500, 400);
  window_->show();
  QVERIFY(QTest::qWaitForWindowActive(window_));
  bar_->setFocus();
  say(0, 200);
}

void TestReadBack::cleanup() {
  delete window_;
}

void TestReadBack::textOpensTheViewForWhoeverHasScrolledUp_data() {
  QTest::addColumn<std::function<void(OutputWidget&)>>("scroll");
  using Scroll = std::function<void(OutputWidget&)>;
  QTest::newRow("by the wheel") << Scroll(
      [](OutputWidget& pane) { turnWheel(*pane.viewport(), 3); });
  QTest::newRow("by the wheel over the bar")
      << Scroll([](OutputWidget& pane) { turnWheel(*pane.verticalScrollBar(), 3); });
  QTest::newRow("by a page") << Scroll(
      [](OutputWidget& pane) { QTest::keyClick(&pane, Qt::Key_PageUp); });
  QTest::newRow("by a click above the slider") << Scroll([](OutputWidget& pane) {
    QTest::mouseClick(pane.verticalScrollBar(), Qt::LeftButton, {}, {5, 60});
  });
}

void TestReadBack::textOpensTheViewForWhoeverHasScrolledUp() {
  QFETCH(const std::function<void(OutputWidget&)>, scroll);
  scroll(*pane_);
  const QString read = topLine(*pane_);
  QVERIFY(!isPaneAtEnd());
  QVERIFY(!isOpen());
  say(200, 1);
  QVERIFY(isOpen());
  QVERIFY(isPaneAtEnd());
  QCOMPARE(topLine(*view()), read);
  QVERIFY(view()->height() > pane_->viewport()->height() / 2);
  QVERIFY(view()->height() < pane_->viewport()->height());
  QCOMPARE(view()->viewport()->width(), pane_->viewport()->width());
  // Its own bar is in sight, not the pane's behind it.
  const QScrollBar* const bar = view()->verticalScrollBar();
  QCOMPARE(pane_->childAt(bar->mapTo(pane_, bar->rect().center())), bar);
}

void TestReadBack::nothingOpens_data() {
  QTest::addColumn<std::function<void(OutputWidget&)>>("act");
  using Act = std::function<void(OutputWidget&)>;
  QTest::newRow("at the end") << Act([](OutputWidget&) {});
  QTest::newRow("for a reader who has come back") << Act([](OutputWidget& pane) {
    turnWheel(*pane.viewport(), 3);
    turnWheel(*pane.viewport(), -3);
  });
  QTest::newRow("for a program that moves the bar")
      << Act([](OutputWidget& pane) { pane.verticalScrollBar()->setValue(3); });
  QTest::newRow("where all fits") << Act([](OutputWidget& pane) {
    pane.clear();
    turnWheel(*pane.viewport(), 3);
  });
  QTest::newRow("in a pane too small for two parts") << Act([](OutputWidget& pane) {
    pane.resize(400, 60);
    turnWheel(*pane.viewport(), 3);
  });
}

void TestReadBack::nothingOpens() {
  QFETCH(const std::function<void(OutputWidget&)>, act);
  act(*pane_);
  say(200, 1);
  QVERIFY(!view());
  QVERIFY(isPaneAtEnd());
}

void TestReadBack::whatIsReadStaysWhereItIs_data() {
  QTest::addColumn<std::function<void(OutputWidget&)>>("change");
  using Change = std::function<void(OutputWidget&)>;
  QTest::newRow("while lines come") << Change([](OutputWidget& pane) {
    for (int i = 0; i < 100; ++i)
      pane.printText("one more", Qt::white);
  });
  QTest::newRow("while the oldest paragraphs are dropped") << Change([](OutputWidget& pane) {
    for (int i = 0; i < 650; ++i)
      pane.printText("one more", Qt::white);
  });
  QTest::newRow("while a status line comes")
      << Change([](OutputWidget& pane) { appendStatusLine(pane, "<b>Connected</b>"); });
  QTest::newRow("in a pane of another width")
      << Change([](OutputWidget& pane) { pane.resize(260, 400); });
  QTest::newRow("in a pane of another height")
      << Change([](OutputWidget& pane) { pane.resize(500, 250); });
  QTest::newRow("in another font")
      << Change([](OutputWidget& pane) { pane.setFont(layout_contents::fonts()[1].font); });
  QTest::newRow("where another document takes over") << Change(haveDocumentRenewed);
  QTest::newRow("while the pane's own bar is moved") << Change([](OutputWidget& pane) {
    pane.verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
    pane.printText("one more", Qt::white);
  });
}

void TestReadBack::whatIsReadStaysWhereItIs() {
  QFETCH(const std::function<void(OutputWidget&)>, change);
  turnWheel(*pane_->viewport(), 10);
  say(200, 1);
  QVERIFY(isOpen());
  const QString read = topLine(*view());
  change(*pane_);
  pane_->settle();
  QTest::qWait(150);  // idle
  QVERIFY(isOpen());
  QVERIFY(isPaneAtEnd());
  QCOMPARE(view()->document(), pane_->document());
  // Paragraphs that are dropped take their place with them.
  if (pane_->document()->blockCount() < 700 ||
      qstrcmp(QTest::currentDataTag(), "while the oldest paragraphs are dropped") == 0)
    QCOMPARE(topLine(*view()), read);
  QCOMPARE(view()->viewport()->width(), pane_->viewport()->width());
  QCOMPARE(static_cast<int>(pane_->document()->pageSize().width()), pane_->viewport()->width());
}

void TestReadBack::noPixelOfTheUpperPartMovesWhenItOpens() {
  turnWheel(*pane_->viewport(), 4);
  QCoreApplication::processEvents();
  const QImage before = pictureOf(*pane_->viewport());
  say(200, 1);
  QVERIFY(isOpen());
  const QImage after = pictureOf(*view()->viewport());
  QCOMPARE(after, before.copy(after.rect()));
}

void TestReadBack::comingDownToTheEndClosesIt() {
  turnWheel(*pane_->viewport(), 4);
  say(200, 1);
  int steps = 0;
  while (isOpen() && steps < 50) {
    turnWheel(*view()->viewport(), -1);
    ++steps;
  }
  QVERIFY(!isOpen());
  QVERIFY2(steps >= 4 && steps < 12, qPrintable(QString::number(steps)));
  QVERIFY(isPaneAtEnd());
  say(201, 1);
  QVERIFY(!isOpen());
}

void TestReadBack::aWheelAtItsTopIsNotForThePane() {
  open();
  for (int i = 0; i < 30; ++i)
    turnWheel(*view()->viewport(), 10);
  QCOMPARE(view()->verticalScrollBar()->value(), 0);
  turnWheel(*view()->viewport(), 5);
  QVERIFY(isPaneAtEnd());
}

void TestReadBack::escapeClosesItAndLeavesTheInput() {
  open();
  QVERIFY(isOpen());
  bar_->setText("say hel");
  bar_->setFocus();
  QTest::keyClick(bar_, Qt::Key_Escape);
  QVERIFY(!isOpen());
  QCOMPARE(bar_->text(), QString("say hel"));
  QVERIFY(bar_->hasFocus());
  // With nothing open it is the bar's again.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QTest::keyClick(bar_, Qt::Key_Escape);
  QCOMPARE(bar_->text(), QString());
}

void TestReadBack::theBorderIsDragged() {
  open();
  const int before = view()->height();
  drag(-40);
  QCOMPARE(view()->height(), before - 40);
  drag(1000);
  QVERIFY(view()->height() > pane_->viewport()->height() * 8 / 10);
  QVERIFY(view()->height() < pane_->viewport()->height() - SplitHandle::thickness);
  drag(-1000);
  QVERIFY(!isOpen());
}

void TestReadBack::theBorderIsMovedByKeys() {
  open();
  auto* const handle = pane_->findChild<SplitHandle*>();
  const int line = QFontMetrics(pane_->font()).lineSpacing();
  const int before = view()->height();
  QTest::keyClick(handle, Qt::Key_Up);
  QCOMPARE(view()->height(), before - line);
  QTest::keyClick(handle, Qt::Key_Down);
  QTest::keyClick(handle, Qt::Key_Down);
  QCOMPARE(view()->height(), before + line);
  for (int press = 0; press < 50; ++press)
    QTest::keyClick(handle, Qt::Key_Down);
  QVERIFY(view()->height() < pane_->viewport()->height() - 2 * line);
  for (int press = 0; press < 50; ++press)
    QTest::keyClick(handle, Qt::Key_Up);
  QVERIFY(isOpen());
  QCOMPARE(view()->height(), 2 * line);
  QTest::keyClick(handle, Qt::Key_Left);
  QCOMPARE(view()->height(), 2 * line);
  // Whoever looks for the keyboard sees it.
  const QImage without = handle->grab().toImage();
  handle->setFocus(Qt::TabFocusReason);
  QVERIFY(handle->grab().toImage() != without);
  QTest::keyClick(handle, Qt::Key_Escape);
  QVERIFY(!isOpen());
  QCOMPARE(QApplication::focusWidget(), bar_);
}

void TestReadBack::theTabKeyGoesFromTheTopDown() {
  open();
  bar_->setFocus();
  const QList<QWidget*> order{view(), pane_->findChild<SplitHandle*>(), pane_, bar_, view()};
  for (QWidget* next : order) {
    QTest::keyClick(window_->windowHandle(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), next);
  }
}

void TestReadBack::theShareIsKept() {
  open();
  drag(-70);
  const int height = view()->height();
  QTest::keyClick(bar_, Qt::Key_Escape);
  open();
  QCOMPARE(view()->height(), height);
  drag(-1000);
  open();
  QVERIFY(!isOpen());
  QVERIFY(isPaneAtEnd());
}

void TestReadBack::thePaneScrollsTheView_data() {
  QTest::addColumn<std::function<void(OutputWidget&)>>("scroll");
  QTest::addColumn<int>("lines");
  using Scroll = std::function<void(OutputWidget&)>;
  const auto press = [](Qt::Key key) {
    return Scroll([key](OutputWidget& pane) { QTest::keyClick(&pane, key); });
  };
  QTest::newRow("the wheel over the newest lines")
      << Scroll([](OutputWidget& pane) { turnWheel(*pane.viewport(), 1); }) << -3;
  QTest::newRow("and down") << Scroll([](OutputWidget& pane) { turnWheel(*pane.viewport(), -1); })
                            << 3;
  QTest::newRow("arrow up") << press(Qt::Key_Up) << -1;
  QTest::newRow("arrow down") << press(Qt::Key_Down) << 1;
  QTest::newRow("to the top") << press(Qt::Key_Home) << -1000;
  QTest::newRow("other keys do nothing") << press(Qt::Key_F2) << 0;
}

void TestReadBack::thePaneScrollsTheView() {
  QFETCH(const std::function<void(OutputWidget&)>, scroll);
  QFETCH(const int, lines);
  open();
  const QScrollBar& bar = *view()->verticalScrollBar();
  const int before = bar.value();
  scroll(*pane_);
  QCOMPARE(bar.value(), std::max(before + lines * bar.singleStep(), 0));
  QVERIFY(isPaneAtEnd());
  // What comes then moves nothing.
  const QString read = topLine(*view());
  say(1001, 1);
  QCOMPARE(topLine(*view()), read);
  QVERIFY(isPaneAtEnd());
}

void TestReadBack::pageByPageOneGetsFurtherUp() {
  pane_->setFocus();
  QTest::keyClick(pane_, Qt::Key_PageUp);
  say(1000, 1);
  int place = view()->verticalScrollBar()->value();
  int pages = 1;
  for (; place > 0; ++pages) {
    QTest::keyClick(pane_, Qt::Key_PageUp);
    QVERIFY(view()->verticalScrollBar()->value() < place);
    place = view()->verticalScrollBar()->value();
    say(1000 + pages, 1);
    QVERIFY(isOpen());
  }
  QVERIFY2(pages > 5, qPrintable(QString::number(pages)));
  // The view is lower than the pane, and so are its pages.
  for (int i = 0; i < 3 * pages && isOpen(); ++i)
    QTest::keyClick(pane_, Qt::Key_PageDown);
  QVERIFY(!isOpen());
  QVERIFY(isPaneAtEnd());
}

void TestReadBack::theWheelWithCtrlSizesTheLetters_data() {
  QTest::addColumn<bool>("isOverView");
  QTest::newRow("over the view") << true;
  QTest::newRow("over the pane") << false;
}

void TestReadBack::theWheelWithCtrlSizesTheLetters() {
  QFETCH(const bool, isOverView);
  open();
  const qreal before = pane_->font().pointSizeF();
  turnWheel(*(isOverView ? view()->viewport() : pane_->viewport()), 2, Qt::ControlModifier);
  QVERIFY(pane_->font().pointSizeF() > before);
  QCOMPARE(view()->font().pointSizeF(), pane_->font().pointSizeF());
  QVERIFY(isPaneAtEnd());
}

void TestReadBack::whereAllFitsItCloses() {
  open();
  pane_->resize(500, 8000);
  QCoreApplication::processEvents();
  QVERIFY(!isOpen());
}

void TestReadBack::whereAllFitsSinceTheScrollNothingOpens() {
  turnWheel(*pane_->viewport(), 3);
  pane_->resize(500, 8000);
  QCoreApplication::processEvents();
  say(1000, 1);
  QVERIFY(!view());
  // Nor later, when not all fits again.
  pane_->resize(500, 400);
  say(1001, 1);
  QVERIFY(!view());
  QVERIFY(isPaneAtEnd());
}

void TestReadBack::aSelectionInItStays_data() {
  QTest::addColumn<std::function<void(OutputWidget&)>>("change");
  using Change = std::function<void(OutputWidget&)>;
  QTest::newRow("while text comes")
      << Change([](OutputWidget& pane) { pane.printText("one more", Qt::white); });
  QTest::newRow("where another document takes over") << Change(haveDocumentRenewed);
}

void TestReadBack::aSelectionInItStays() {
  QFETCH(const std::function<void(OutputWidget&)>, change);
  open();
  QTextCursor cursor = view()->cursorForPosition({5, 3});
  cursor.select(QTextCursor::LineUnderCursor);
  view()->setTextCursor(cursor);
  const QString selected = cursor.selectedText();
  QVERIFY(!selected.isEmpty());
  const QString read = topLine(*view());
  change(*pane_);
  pane_->settle();
  QCOMPARE(view()->textCursor().selectedText(), selected);
  QCOMPARE(topLine(*view()), read);
}

void TestReadBack::fromRightToLeftTheTextIsAtItsPlace() {
  window_->setLayoutDirection(Qt::RightToLeft);
  QCoreApplication::processEvents();
  open();
  const auto inPane = [this](const QAbstractScrollArea& area) {
    return area.viewport()->mapTo(pane_, QPoint(0, 0)).x();
  };
  QVERIFY(inPane(*pane_) > pane_->frameWidth());
  QCOMPARE(inPane(*view()), inPane(*pane_));
  const auto* const handle = pane_->findChild<SplitHandle*>();
  QCOMPARE(handle->x(), pane_->frameWidth());
  QCOMPARE(handle->width(), pane_->width() - 2 * pane_->frameWidth());
}

void TestReadBack::aFloodIsHardlySlowerWhileItIsOpen() {
  struct Times {
    qint64 all = 0;
    qint64 longestTurn = 0;
  };
  const auto flood = [this] {
    Times times;
    ProcessorClock clock;
    clock.start();
    for (int turn = 0; turn < 60; ++turn) {
      const qint64 begin = clock.elapsed();
      for (int i = 0; i < 50; ++i)
        pane_->printText(QStringLiteral("Line %1 of the flood, with some words in it.").arg(i),
                         Qt::white);
      pane_->settle();
      QCoreApplication::processEvents();
      times.longestTurn = std::max(times.longestTurn, clock.elapsed() - begin);
    }
    times.all = clock.elapsed();
    return times;
  };
  (void)flood();
  const Times closed = flood();
  open();
  QVERIFY(isOpen());
  const Times opened = flood();
  QVERIFY(isOpen());
  const QString told = QStringLiteral("closed %1 ms, longest turn %2; open %3 ms, longest turn %4")
                           .arg(closed.all)
                           .arg(closed.longestTurn)
                           .arg(opened.all)
                           .arg(opened.longestTurn);
  QVERIFY2(opened.all <= 3 * closed.all + 50, qPrintable(told));
  QVERIFY2(opened.longestTurn <= 50, qPrintable(told));
}

KELMORA_GUI_TEST_MAIN(TestReadBack)
#include "tst_readback.moc"
