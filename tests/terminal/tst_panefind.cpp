#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDebug>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QToolButton>
#include <QWheelEvent>

#include "IdleHost.h"
#include "LayoutContents.h"
#include "PaneHtml.h"
#include "PictureCompare.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/reading/BarMarks.h"
#include "terminal/reading/FindBar.h"
#include "terminal/reading/ReadBackView.h"
#include "terminal/reading/SplitHandle.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// The rows of a scroll bar's picture in which there is a mark.
QList<int> markedRows(const QImage& bar) {
  QList<int> marked;
  for (int y = 0; y < bar.height(); ++y)
    if (bar.pixelColor(bar.width() / 2, y) == QColor(224, 120, 0))
      marked << y;
  return marked;
}

}  // namespace

/// Words are found in the pane while the game goes on, by keys as by the mouse.
class TestPaneFind : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void theKeyOpensTheBarAndEscapeGoesBackToTheInput();
  void whatIsTypedNextTakesThePlaceOfTheSentLine();
  void theCountFollowsTheWords_data();
  void theCountFollowsTheWords();
  void theNewestHitComesFirst();
  void aHitInSightMovesNothing();
  void furtherHits_data();
  void furtherHits();
  void hitsAreMarkedInTheTextAndOnTheBar();
  void hitsOfOneParagraphHaveTheirOwnMarks();
  void marksAreAsHighAsTheBar();
  void textThatComesIsLookedThrough();
  void paragraphsThatGoTakeTheirHits();
  void aHitKeepsItsPlaceWhileTextComes();
  void anotherDocumentHasTheSameHits_data();
  void anotherDocumentHasTheSameHits();
  void typingAndMendingDoesNotWander();
  void scrollingIsAnotherPlaceToLookFrom();
  void selectedWordsAreLookedFor();
  void nothingIsLeftWhenItCloses();
  void ofTooManyHitsTheNewestAreFound();
  void escapeInTheBarLeavesTheViewOfEarlierText();
  void theBarIsAboveTheViewOfEarlierText();
  void nothingInTheBarIsCut_data();
  void nothingInTheBarIsCut();
  void aHitBehindTheBarComesOut();
  void aKeyAsksForTheMenu_data();
  void aKeyAsksForTheMenu();
  void theMenuOffersWhatIsThere();
  void aTriggerIsMadeOfTheLine_data();
  void aTriggerIsMadeOfTheLine();
  void aLineWithoutAPatternOffersNoTrigger();
  void whatIsCopiedKeepsLinesAndBlanks();

 private:
  void say(int from, int count) {
    for (int i = from; i < from + count; ++i)
      pane_->printText(QStringLiteral("Line %1: the orc hits you.").arg(i), Qt::white);
    settle();
  }
  void settle() {
    pane_->settle();
    QCoreApplication::processEvents();
  }
  [[nodiscard]] FindBar* bar() const { return pane_->findChild<FindBar*>(); }
  [[nodiscard]] bool isOpen() const { return bar() && bar()->isVisible(); }
  [[nodiscard]] QLineEdit& words() const { return *bar()->findChild<QLineEdit*>(); }
  [[nodiscard]] QString count() const { return bar()->findChild<QLabel*>()->text(); }
  void open() const { QTest::keyClick(inputBar_, Qt::Key_F, Qt::ControlModifier); }
  void find(const QString& what) {
    open();
    words().clear();
    QTest::keyClicks(&words(), what);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
  }
  void check(const QString& option) const {
    for (QToolButton* button : bar()->findChildren<QToolButton*>())
      if (button->accessibleName() == option)
        return button->click();
    QFAIL("no such option");
  }
  /// The paragraph of the current hit.
  [[nodiscard]] QString currentLine() const {
    for (const auto& one : pane_->extraSelections())
      if (one.format.foreground() == Qt::black)
        return one.cursor.block().text();
    return {};
  }

  /// The texts of the context menu over the newest of these words, of which one may
  /// be chosen.
  QStringList offered(const QString& words, const QString& chosen = {});

  IdleHost host_;
  QWidget* window_ = nullptr;
  InputWidget* inputBar_ = nullptr;
  OutputWidget* pane_ = nullptr;
};

void TestPaneFind::init() {
  window_ = new QWidget;
  window_->resize(600, 440);
  inputBar_ = new InputWidget(host_, window_);
  inputBar_->setGeometry(0, 410, 600, 30);
  pane_ = new OutputWidget(*inputBar_, window_);
  QPalette palette = pane_->palette();
  palette.setColor(QPalette::Base, Qt::black);
  pane_->setPalette(palette);
  pane_->setFont(layout_contents::fonts()[0].font);
  pane_->setGeometry(0, 0, 600, 400);
  window_->show();
  QVERIFY(QTest::qWaitForWindowActive(window_));
  inputBar_->setFocus();
  say(0, 100);
}

void TestPaneFind::cleanup() {
  delete window_;
}

void TestPaneFind::theKeyOpensTheBarAndEscapeGoesBackToTheInput() {
  inputBar_->setText("say hel");
  QVERIFY(!bar());
  open();
  QVERIFY(isOpen());
  QVERIFY(words().hasFocus());
  // Though the pane is black, its child can be read.
  QCOMPARE(words().palette().color(QPalette::Base), QApplication::palette().color(QPalette::Base));
  QTest::keyClicks(&words(), "orc");
  QTest::keyClick(&words(), Qt::Key_Escape);
  QVERIFY(!isOpen());
  QVERIFY(inputBar_->hasFocus());
  QCOMPARE(inputBar_->text(), QString("say hel"));
}

void TestPaneFind::whatIsTypedNextTakesThePlaceOfTheSentLine() {
  inputBar_->setText("say hello");
  inputBar_->selectAll();
  find("orc");
  QTest::keyClick(&words(), Qt::Key_Escape);
  QCOMPARE(inputBar_->selectedText(), QString("say hello"));
  QTest::keyClicks(inputBar_, "look");
  QCOMPARE(inputBar_->text(), QString("look"));
}

void TestPaneFind::theCountFollowsTheWords_data() {
  QTest::addColumn<QString>("words");
  QTest::addColumn<QString>("option");
  QTest::addColumn<QString>("count");
  QTest::newRow("in any case") << "ORC"
                               << ""
                               << "100 of 100";
  QTest::newRow("as written") << "ORC"
                              << "Upper and lower case"
                              << "No hit";
  QTest::newRow("parts of words") << "hit"
                                  << ""
                                  << "100 of 100";
  QTest::newRow("whole words") << "hit"
                               << "Whole words"
                               << "No hit";
  QTest::newRow("an expression") << "Line \\d5"
                                 << "Regular expression"
                                 << "9 of 9";
  QTest::newRow("no expression") << "("
                                 << "Regular expression"
                                 << "No expression";
  QTest::newRow("no words") << ""
                            << ""
                            << "";
}

void TestPaneFind::theCountFollowsTheWords() {
  QFETCH(const QString, words);
  QFETCH(const QString, option);
  find(words);
  if (!option.isEmpty())
    check(option);
  QCoreApplication::processEvents();
  QTEST(count(), "count");
}

void TestPaneFind::theNewestHitComesFirst() {
  find("Line 2");
  // Lines 2 and 20 to 29, none of which is in sight.
  QCOMPARE(count(), QString("11 of 11"));
  QCOMPARE(currentLine(), QString("Line 29: the orc hits you."));
  QVERIFY(pane_->verticalScrollBar()->value() < pane_->verticalScrollBar()->maximum());
}

void TestPaneFind::aHitInSightMovesNothing() {
  const int before = pane_->verticalScrollBar()->value();
  find("Line 9");
  QCOMPARE(currentLine(), QString("Line 99: the orc hits you."));
  QCOMPARE(pane_->verticalScrollBar()->value(), before);
}

void TestPaneFind::furtherHits_data() {
  QTest::addColumn<int>("key");
  QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
  QTest::addColumn<QStringList>("lines");
  const QStringList older{"26", "16", "6", "86"};
  const QStringList newer{"46", "56", "66", "76", "86", "6"};
  using Modifiers = Qt::KeyboardModifiers;
  QTest::newRow("F3 goes up, and from the oldest to the newest")
      << int(Qt::Key_F3) << Modifiers(Qt::NoModifier) << older;
  QTest::newRow("so does Enter") << int(Qt::Key_Return) << Modifiers(Qt::NoModifier) << older;
  QTest::newRow("Shift turns F3 round") << int(Qt::Key_F3) << Modifiers(Qt::ShiftModifier) << newer;
  QTest::newRow("and Enter") << int(Qt::Key_Return) << Modifiers(Qt::ShiftModifier) << newer;
}

void TestPaneFind::furtherHits() {
  QFETCH(const int, key);
  QFETCH(const Qt::KeyboardModifiers, modifiers);
  QFETCH(const QStringList, lines);
  find("6:");
  QTest::keyClick(&words(), Qt::Key_Return);
  // From line 96 up to 36.
  for (int i = 0; i < 5; ++i)
    QTest::keyClick(&words(), Qt::Key_F3);
  QCoreApplication::processEvents();
  QCOMPARE(currentLine().left(7), QString("Line 36"));
  if (modifiers == Qt::NoModifier) {
    for (const QString& line : lines.first(3)) {
      QTest::keyClick(&words(), Qt::Key(key), modifiers);
      QCoreApplication::processEvents();
      QCOMPARE(currentLine(), QStringLiteral("Line %1: the orc hits you.").arg(line));
    }
    QTest::keyClick(&words(), Qt::Key(key), modifiers);
    QCoreApplication::processEvents();
    QCOMPARE(currentLine().left(7), QString("Line 96"));
    return;
  }
  for (const QString& line : lines.first(5)) {
    QTest::keyClick(&words(), Qt::Key(key), modifiers);
    QCoreApplication::processEvents();
    QCOMPARE(currentLine(), QStringLiteral("Line %1: the orc hits you.").arg(line));
  }
}

void TestPaneFind::hitsAreMarkedInTheTextAndOnTheBar() {
  const QImage before = pictureOf(*pane_->viewport());
  find("hits");
  auto* const marks = pane_->verticalScrollBar()->findChild<BarMarks*>();
  QVERIFY(marks);
  QVERIFY(marks->isVisible());
  const int lines = pane_->viewport()->height() / QFontMetrics(pane_->font()).lineSpacing();
  const auto found = pane_->extraSelections().size();
  QVERIFY2(found >= lines - 3 && found <= lines + 2, qPrintable(QString::number(found)));
  QVERIFY(pictureOf(*pane_->viewport()) != before);
  // One mark in the picture of the bar for a single hit near the middle.
  words().setText("Line 50:");
  QCoreApplication::processEvents();
  QCoreApplication::processEvents();
  const QImage bar = pictureOf(*marks);
  const QList<int> marked = markedRows(bar);
  QCOMPARE(marked.size(), 2);
  QVERIFY(std::abs(marked.first() - bar.height() / 2) < 15);
}

void TestPaneFind::hitsOfOneParagraphHaveTheirOwnMarks() {
  QString lines;
  for (int i = 0; i < 90; ++i)
    lines += i % 30 == 10 ? "an orc<br>" : "a long and winding road<br>";
  pane_->clear();
  insertServerHtml(*pane_, lines);
  settle();
  QCOMPARE(pane_->document()->blockCount(), 1);
  find("orc");
  QCOMPARE(count(), QString("3 of 3"));
  const QImage bar = pictureOf(*pane_->verticalScrollBar()->findChild<BarMarks*>());
  const QList<int> marked = markedRows(bar);
  QCOMPARE(marked.size(), 6);
  for (qsizetype hit = 0; hit < 3; ++hit) {
    const qsizetype wanted = bar.height() * (10 + 30 * hit) / 90;
    QVERIFY2(std::abs(marked[2 * hit] - wanted) < 15, qPrintable(QString::number(marked[2 * hit])));
  }
}

void TestPaneFind::marksAreAsHighAsTheBar() {
  find("orc");
  pane_->resize(600, 300);
  QCOMPARE(pane_->verticalScrollBar()->findChild<BarMarks*>()->geometry(),
           pane_->verticalScrollBar()->rect());
}

void TestPaneFind::textThatComesIsLookedThrough() {
  find("orc");
  QCOMPARE(count(), QString("100 of 100"));
  say(100, 50);
  QTRY_COMPARE(count(), QString("100 of 150"));
  insertServerHtml(*pane_, "an o");
  settle();
  insertServerHtml(*pane_, "rc");
  settle();
  QTRY_COMPARE(count(), QString("100 of 151"));
}

void TestPaneFind::paragraphsThatGoTakeTheirHits() {
  find("Line 7:");
  QCOMPARE(count(), QString("1 of 1"));
  words().setText("Line 7");
  QCoreApplication::processEvents();
  QVERIFY(count().endsWith("of 11"));
  say(1000, 690);  // of 750 that are kept
  QTRY_VERIFY2(count().endsWith("of 10"), qPrintable(count()));
}

void TestPaneFind::aHitKeepsItsPlaceWhileTextComes() {
  find("Line 20:");
  say(100, 3);
  auto* const view = pane_->findChild<ReadBackView*>();
  QVERIFY(view);
  QVERIFY(view->isVisible());
  QTRY_VERIFY(!view->extraSelections().isEmpty());
  QCOMPARE(view->extraSelections().first().cursor.block().text().left(7), QString("Line 20"));
  QVERIFY(view->viewport()->rect().contains(
      view->cursorRect(view->extraSelections().first().cursor).center()));
  QTRY_VERIFY(view->verticalScrollBar()->findChild<BarMarks*>());
  QCOMPARE(count(), QString("1 of 1"));
  QVERIFY(isOpen());
  QVERIFY(words().hasFocus());
  // Nothing of the bar is behind the view.
  QVERIFY(bar()->isAncestorOf(pane_->childAt(bar()->geometry().center())));
  const int place = view->verticalScrollBar()->value();
  QTest::keyClick(&words(), Qt::Key_PageUp);
  QVERIFY(view->verticalScrollBar()->value() < place);
}

void TestPaneFind::anotherDocumentHasTheSameHits_data() {
  QTest::addColumn<QString>("words");
  QTest::addColumn<QString>("text");
  QTest::addColumn<QStringList>("counts");
  QTest::newRow("with a current one")
      << "Line 99:"
      << "Line 99: again" << QStringList{"1 of 2", "2 of 2", "1 of 2"};
  QTest::newRow("with none until then") << "zebra"
                                        << "a zebra" << QStringList{"0 of 1", "1 of 1", "1 of 1"};
}

void TestPaneFind::anotherDocumentHasTheSameHits() {
  QFETCH(const QString, words);
  QFETCH(const QString, text);
  QFETCH(const QStringList, counts);
  find(words);
  const QTextDocument* const before = pane_->document();
  for (int i = 0; i < 9000; ++i)
    insertServerHtml(*pane_, QStringLiteral("<a href=\"http://a/%1\">%1</a>%2")
                                 .arg(i % 3 ? i : 0)
                                 .arg(i % 30 ? "" : "<br>"));
  pane_->settle();
  QTRY_VERIFY_WITH_TIMEOUT(pane_->document() != before, 20'000);
  insertServerHtml(*pane_, text);
  settle();
  QTRY_COMPARE(count(), counts[0]);
  for (const QString& next : counts.sliced(1)) {
    QTest::keyClick(&this->words(), Qt::Key_F3);
    QTRY_COMPARE(count(), next);
    QTRY_VERIFY(!currentLine().isEmpty());
  }
}

void TestPaneFind::typingAndMendingDoesNotWander() {
  const int before = pane_->verticalScrollBar()->value();
  find("Line 2");
  QCOMPARE(currentLine().left(8), QString("Line 29:"));
  QTest::keyClicks(&words(), "0:");
  QTRY_COMPARE(currentLine().left(8), QString("Line 20:"));
  for (int i = 0; i < 2; ++i)
    QTest::keyClick(&words(), Qt::Key_Backspace);
  QTRY_COMPARE(currentLine().left(8), QString("Line 29:"));
  QTest::keyClick(&words(), Qt::Key_Backspace);
  QTRY_COMPARE(currentLine().left(8), QString("Line 99:"));
  QCOMPARE(pane_->verticalScrollBar()->value(), before);
}

void TestPaneFind::scrollingIsAnotherPlaceToLookFrom() {
  find("Line 5");
  QCOMPARE(currentLine().left(8), QString("Line 59:"));
  pane_->verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
  QTest::keyClick(&words(), Qt::Key_Backspace);
  QTRY_VERIFY2(currentLine() < "Line 3", qPrintable(currentLine()));
  QCOMPARE(pane_->verticalScrollBar()->value(), 0);
}

void TestPaneFind::selectedWordsAreLookedFor() {
  QTextCursor cursor = pane_->document()->find("orc hits");
  pane_->setTextCursor(cursor);
  open();
  QCOMPARE(words().text(), QString("orc hits"));
  QCOMPARE(words().selectedText(), QString("orc hits"));
}

void TestPaneFind::nothingIsLeftWhenItCloses() {
  const int place = pane_->verticalScrollBar()->value();
  const QImage before = pictureOf(*pane_);
  find("Line 9");
  QVERIFY(pictureOf(*pane_) != before);
  QTest::keyClick(&words(), Qt::Key_Escape);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCOMPARE(pane_->verticalScrollBar()->value(), place);
  QVERIFY(!bar());
  QVERIFY(!pane_->findChild<BarMarks*>());
  QVERIFY(pane_->extraSelections().isEmpty());
  QCOMPARE(pictureOf(*pane_), before);
}

void TestPaneFind::ofTooManyHitsTheNewestAreFound() {
  for (int i = 0; i < 40; ++i)
    pane_->printText(QString(600, u'x'), Qt::white);
  settle();
  const int before = pane_->verticalScrollBar()->value();
  find("x");
  QTRY_COMPARE(count(), QString("10000 of many"));
  QCOMPARE(pane_->verticalScrollBar()->value(), before);
  // So they stay, while more text comes and while there is less of it.
  pane_->printText(QStringLiteral("x and x"), Qt::white);
  settle();
  QTRY_COMPARE(count(), QString("9998 of many"));
  QTest::keyClick(&words(), Qt::Key_Return, Qt::ShiftModifier);
  QTRY_COMPARE(count(), QString("9999 of many"));
  QTRY_COMPARE(currentLine(), QString("x and x"));
}

void TestPaneFind::escapeInTheBarLeavesTheViewOfEarlierText() {
  find("Line 20:");
  say(100, 3);
  QVERIFY(pane_->findChild<ReadBackView*>());
  QTest::keyClick(&words(), Qt::Key_Escape);
  QVERIFY(!isOpen());
  QVERIFY(pane_->findChild<ReadBackView*>()->isVisible());
  QTest::keyClick(inputBar_, Qt::Key_Escape);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QVERIFY(!pane_->findChild<ReadBackView*>());
}

void TestPaneFind::theBarIsAboveTheViewOfEarlierText() {
  const auto isOnTop = [this] {
    const QWidget* const there = pane_->childAt(bar()->geometry().center());
    return there == bar() || bar()->isAncestorOf(there);
  };
  find("Line 20:");
  QVERIFY(isOnTop());
  say(100, 3);
  QVERIFY(pane_->findChild<ReadBackView*>());
  QVERIFY(isOnTop());
  QTest::keyClick(&words(), Qt::Key_Escape);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  find("Line 21:");
  QVERIFY(isOnTop());
  say(103, 3);
  QVERIFY(isOnTop());
  QTest::keyClick(pane_->findChild<SplitHandle*>(), Qt::Key_Up);
  QVERIFY(isOnTop());
  pane_->resize(580, 380);
  say(106, 1);
  QVERIFY(isOnTop());
}

void TestPaneFind::nothingInTheBarIsCut_data() {
  QTest::addColumn<int>("percent");  // of the desktop's font
  QTest::addColumn<int>("width");    // of the pane
  QTest::newRow("usual font, usual width") << 100 << 780;
  QTest::newRow("usual font, narrow") << 100 << 360;
  QTest::newRow("large font, usual width") << 200 << 780;
  QTest::newRow("large font, narrow") << 200 << 600;
}

void TestPaneFind::nothingInTheBarIsCut() {
  QFETCH(const int, percent);
  QFETCH(const int, width);
  const QFont usual = QApplication::font();
  const auto back = qScopeGuard([&] { QApplication::setFont(usual); });
  QFont font = usual;
  font.setPointSizeF(usual.pointSizeF() * percent / 100);
  QApplication::setFont(font);
  pane_->resize(width, 400);
  const auto check = [this] {
    QCOMPARE(bar()->geometry() & pane_->viewport()->geometry(), bar()->geometry());
    for (const QWidget* part : bar()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      const QSize needed = part->minimumSizeHint();
      const QString seen = QString::fromLatin1(part->metaObject()->className()) +
                           QDebug::toString(part->geometry()) + QDebug::toString(needed);
      QVERIFY2(bar()->rect().contains(part->geometry()), qPrintable(seen));
      QVERIFY2(part->width() >= needed.width() && part->height() >= needed.height(),
               qPrintable(seen));
    }
    constexpr int eight = 8;  // characters of the words are in sight
    QVERIFY(words().width() > eight * words().fontMetrics().averageCharWidth());
  };
  open();
  check();
  for (const char* sought : {"orc", "Line 5:", "none of it", "o", ""}) {
    find(sought);
    QTRY_VERIFY(count().isEmpty() == words().text().isEmpty());
    QCoreApplication::processEvents();
    check();
  }
}

void TestPaneFind::aHitBehindTheBarComesOut() {
  find("Line 4");
  bar()->setMinimumHeight(100);
  pane_->resize(599, 400);
  for (int press = 0; press < 20 && !currentLine().startsWith("Line 42:"); ++press) {
    QTest::keyClick(&words(), Qt::Key_F3);
    QCoreApplication::processEvents();
  }
  const auto topOf = [this](const char* line) {
    return pane_->cursorRect(pane_->document()->find(line)).top();
  };
  pane_->verticalScrollBar()->setValue(pane_->verticalScrollBar()->value() + topOf("Line 37:"));
  QVERIFY(topOf("Line 41:") > bar()->y() && topOf("Line 41:") < bar()->geometry().bottom());
  QTest::keyClick(&words(), Qt::Key_F3);
  QCoreApplication::processEvents();
  QVERIFY2(currentLine().startsWith("Line 41:"), qPrintable(currentLine()));
  QVERIFY(topOf("Line 41:") > bar()->geometry().bottom());
}

void TestPaneFind::aKeyAsksForTheMenu_data() {
  QTest::addColumn<QString>("selected");
  QTest::addColumn<QString>("sought");
  QTest::addColumn<bool>("staysOpen");
  QTest::addColumn<QString>("line");
  const QString last = "Line 99: the orc hits you.";
  const QString sought = "Line 91: the orc hits you.";
  QTest::newRow("for the hit") << ""
                               << "Line 91:" << true << sought;
  QTest::newRow("for the last hit") << ""
                                    << "Line 91:" << false << sought;
  QTest::newRow("for what is selected") << "Line 93:"
                                        << "" << false << "Line 93: the orc hits you.";
  QTest::newRow("for what is selected, behind a hit")
      << "Line 93:"
      << "Line 91:" << false << "Line 93: the orc hits you.";
  QTest::newRow("for the last line") << ""
                                     << "" << false << last;
  QTest::newRow("for the last line, with a selection out of sight") << "Line 3:"
                                                                    << "" << false << last;
}

void TestPaneFind::aKeyAsksForTheMenu() {
  QFETCH(const QString, selected);
  QFETCH(const QString, sought);
  QFETCH(const bool, staysOpen);
  QString line;
  pane_->setTriggerMaker({.patternFor = [](const QString& shown, qsizetype) { return shown; },
                          .make = [&line](const QString& made) { line = made; }});
  if (!sought.isEmpty()) {
    find(sought);
    if (!staysOpen)
      QTest::keyClick(&words(), Qt::Key_Escape);
  }
  if (!selected.isEmpty())
    pane_->setTextCursor(pane_->document()->find(selected));
  pane_->verticalScrollBar()->setValue(pane_->verticalScrollBar()->maximum());
  QPoint place;
  const auto choose = [&] {
    QTimer::singleShot(0, this, [&] {
      auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (!menu)
        return;
      place = menu->pos();
      for (QAction* action : menu->actions())
        if (action->text().contains("Trigger"))
          action->trigger();
      menu->close();
    });
  };
  choose();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {-50, -9000}, {-50, -9000});
  QCoreApplication::sendEvent(pane_, &event);
  QTEST(line, "line");
#ifndef Q_OS_WIN
  line.clear();
  choose();
  QTest::keyClick(pane_, Qt::Key_F10, Qt::ShiftModifier);
  QTEST(line, "line");
#endif
  QCOMPARE(pane_->verticalScrollBar()->value(), pane_->verticalScrollBar()->maximum());
  QVERIFY2(pane_->rect().contains(pane_->mapFromGlobal(place)),
           qPrintable(QDebug::toString(place)));
}

QStringList TestPaneFind::offered(const QString& words, const QString& chosen) {
  QTextCursor end(pane_->document());
  end.movePosition(QTextCursor::End);
  const QRect at =
      pane_->cursorRect(pane_->document()->find(words, end, QTextDocument::FindBackward));
  QStringList texts;
  QTimer::singleShot(0, this, [&] {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu)
      return;
    for (QAction* action : menu->actions()) {
      const QString text = action->text().remove('&');
      if (!action->isSeparator())
        texts << text + (action->isEnabled() ? "" : " (off)");
      if (!chosen.isEmpty() && text.startsWith(chosen))
        action->trigger();
    }
    menu->close();
  });
  const QPoint place = at.center() - QPoint(3, 0);
  QContextMenuEvent event(QContextMenuEvent::Mouse, place, pane_->viewport()->mapToGlobal(place));
  QCoreApplication::sendEvent(pane_->viewport(), &event);
  return texts;
}

void TestPaneFind::theMenuOffersWhatIsThere() {
  const QString divide = "Divide the Pane While Reading Back";
  QCOMPARE(offered("Line 99"), (QStringList{"Copy (off)", "Select All", "Find\u2026", divide}));
  pane_->setTriggerMaker({.patternFor = [](const QString& line, qsizetype) { return line; },
                          .make = [](const QString&) {}});
  insertServerHtml(*pane_, "see <a href=\"http://kelmora.example/a\">the map</a>");
  settle();
  pane_->setTextCursor(pane_->document()->find("orc"));
  const QStringList withLink = offered("the map", "Copy Link");
  QCOMPARE(withLink, (QStringList{"Copy", "Open Link", "Copy Link Address", "Select All",
                                  "Find\u2026", "Make a Trigger of This Line\u2026", divide}));
  QCOMPARE(QGuiApplication::clipboard()->text(), QString("http://kelmora.example/a"));
  (void)offered("Line 99", "Find");
  QVERIFY(isOpen());
  (void)offered("Line 99", "Divide");
  QWheelEvent wheel({20, 5}, pane_->viewport()->mapToGlobal(QPointF(20, 5)), {}, {0, 600},
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(pane_->viewport(), &wheel);
  say(100, 1);
  QVERIFY(!pane_->findChild<ReadBackView*>());
}

void TestPaneFind::aTriggerIsMadeOfTheLine_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<QString>("word");
  QTest::addColumn<QString>("line");
  QTest::newRow("a paragraph of one line") << "The orc dies."
                                           << "orc"
                                           << "The orc dies.";
  QTest::newRow("the first of some lines") << "You rest.<br>The orc dies.<br>You win."
                                           << "rest"
                                           << "You rest.";
  QTest::newRow("the middle one") << "You rest.<br>The orc dies.<br>You win."
                                  << "dies"
                                  << "The orc dies.";
  QTest::newRow("the last one") << "You rest.<br>The orc dies.<br>You win."
                                << "win"
                                << "You win.";
  QTest::newRow("hard blanks as blanks, none around it") << "<br>&nbsp; The &nbsp;orc dies. <br>"
                                                         << "orc"
                                                         << "The  orc dies.";
}

void TestPaneFind::aTriggerIsMadeOfTheLine() {
  QFETCH(const QString, html);
  QFETCH(const QString, word);
  QString line;
  qsizetype at = -1;
  pane_->setTriggerMaker({.patternFor =
                              [&at](const QString& shown, qsizetype place) {
                                at = place;
                                return shown;
                              },
                          .make = [&line](const QString& made) { line = made; }});
  insertServerHtml(*pane_, html);
  settle();
  (void)offered(word, "Make a Trigger");
  QTEST(line, "line");
  const qsizetype start = line.indexOf(word);
  QVERIFY2(at > start && at <= start + word.size(), qPrintable(QString::number(at)));
}

void TestPaneFind::aLineWithoutAPatternOffersNoTrigger() {
  pane_->setTriggerMaker({.patternFor = [](const QString&, qsizetype) { return QString(); },
                          .make = [](const QString&) { QFAIL("was made"); }});
  QVERIFY(offered("Line 99", "Make").contains("Make a Trigger of This Line\u2026 (off)"));
}

void TestPaneFind::whatIsCopiedKeepsLinesAndBlanks() {
  pane_->clear();
  insertServerHtml(*pane_, "+--&nbsp;&nbsp; A&nbsp; B --+<br>|&nbsp; &nbsp; x |<br><br>end");
  appendStatusLine(*pane_, "next");
  settle();
  pane_->selectAll();
  pane_->copy();
  QCOMPARE(QGuiApplication::clipboard()->text(), QString("+--   A  B --+\n|    x |\n\nend\nnext"));
}

KELMORA_GUI_TEST_MAIN(TestPaneFind)
#include "tst_panefind.moc"
