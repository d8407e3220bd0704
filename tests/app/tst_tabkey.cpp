#include <QApplication>
#include <QComboBox>
#include <QPlainTextEdit>
#include <algorithm>

#include "PlayWindow.h"
#include "support/Controls.h"
#include "support/ScratchMain.h"
#include "terminal/reading/FindBar.h"
#include "terminal/reading/ReadBackView.h"
#include "terminal/reading/SplitHandle.h"

namespace {

/// The place in the window.
QRect placeOf(const QWidget& widget) {
  return {widget.mapTo(widget.window(), QPoint(0, 0)), widget.size()};
}

QString wordsOf(const QWidget& widget) {
  for (const char* property : {"accessibleName", "text", "currentText"})
    if (const QString words = widget.property(property).toString(); !words.isEmpty())
      return words;
  return QString::fromLatin1(widget.metaObject()->className());
}

/// Where Tab, or Shift+Tab, leads from where the keyboard is, until it is there again.
QList<QWidget*> way(QWidget& window, Qt::Key key = Qt::Key_Tab) {
  constexpr int mostStops = 60;
  QList<QWidget*> stops;
  QWidget* const start = QApplication::focusWidget();
  do {
    QTest::keyClick(window.windowHandle(), key);
    stops << QApplication::focusWidget();
  } while (stops.last() != start && stops.size() < mostStops);
  return stops;
}

/// What can have the keyboard at present.
QList<QWidget*> controlsOf(const QWidget& window) {
  QList<QWidget*> controls;
  for (QWidget* widget : window.findChildren<QWidget*>())
    if (widget->window() == &window && widget->isVisible() && widget->isEnabled() &&
        !widget->focusProxy() && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus)
      controls << widget;
  return controls;
}

/// How a window is read: in rows from the left, or its columns one after the other and
/// its last row at the end.
enum class Reading { Rows, Columns };

bool isNext(const QRect& here, const QRect& next, Reading reading, int lastRow) {
  const bool isBelow = next.top() > here.bottom();
  const bool isRight = next.left() > here.right();
  const bool isLevel = next.top() <= here.bottom() && here.top() <= next.bottom();
  if (reading == Reading::Rows || next.bottom() >= lastRow)
    return isBelow || (isRight && isLevel);
  const bool isInColumn = next.left() <= here.right() && here.left() <= next.right();
  return (isBelow && isInColumn) || (isRight && next.top() <= here.top());
}

/// What comes in another order than that in which it is read; empty where nothing does.
QString disorder(const QWidget& window, QList<QWidget*> stops, Reading reading) {
  int lastRow = 0;
  for (const QWidget* stop : stops)
    lastRow = std::max(lastRow, placeOf(*stop).bottom());
  const auto corner = [reading](const QWidget* stop) {
    constexpr int roughly = 20;  // controls at one edge differ by a few pixels
    const QPoint place = placeOf(*stop).topLeft() / roughly;
    return reading == Reading::Rows ? std::pair(place.y(), place.x())
                                    : std::pair(place.x(), place.y());
  };
  const auto first = std::min_element(stops.begin(), stops.end(), [&](auto* one, auto* other) {
    return corner(one) < corner(other);
  });
  std::rotate(stops.begin(), first, stops.end());
  QStringList wrong;
  for (qsizetype i = 1; i < stops.size(); ++i)
    if (!isNext(placeOf(*stops[i - 1]), placeOf(*stops[i]), reading, lastRow))
      wrong << wordsOf(*stops[i]) + QStringLiteral(" behind ") + wordsOf(*stops[i - 1]);
  const QList<QWidget*> controls = controlsOf(window);
  for (QWidget* control : controls)
    if (stops.count(control) != 1)
      wrong << wordsOf(*control) + QStringLiteral(" is met %1 times").arg(stops.count(control));
  if (stops.size() != controls.size())
    wrong << QStringLiteral("%1 stops").arg(stops.size());
  return wrong.join(u'\n');
}

}  // namespace

/// The Tab key meets every control, in the order in which they are read.
class TestTabKey : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void inADialog_data();
  void inADialog();
  void inAnEditorWhileEditing_data();
  void inAnEditorWhileEditing();
  void inTheInterfaceSettings();
  void inTheWindow_data();
  void inTheWindow();
  void everyToolbarButtonHasAKey();
  void aWrongOrderIsFound();
};

void TestTabKey::inADialog_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QString>("title");
  QTest::addColumn<bool>("inColumns");
  QTest::addColumn<int>("fewest");
  QTest::newRow("the general settings") << 5 << "General Settings" << true << 30;
  QTest::newRow("the proxy settings") << 6 << "Proxy Settings" << false << 8;
  QTest::newRow("macros") << 7 << "Macros" << false << 4;
  QTest::newRow("aliases") << 8 << "Aliases" << false << 4;
  QTest::newRow("triggers") << 9 << "Triggers" << false << 4;
  QTest::newRow("the help") << 10 << "Kelmora Help" << false << 5;
}

void TestTabKey::inADialog() {
  QFETCH(const int, action);
  QFETCH(const QString, title);
  QFETCH(const bool, inColumns);
  QFETCH(const int, fewest);
  const PlayWindow play(5000);
  QDialog* const dialog = play.dialogTitled(title);
  play.actions.at(action)->trigger();
  QVERIFY(QTest::qWaitForWindowActive(dialog));
  QList<QWidget*> stops = way(*dialog);
  QVERIFY(stops.size() >= fewest);
  const Reading reading = inColumns ? Reading::Columns : Reading::Rows;
  QCOMPARE(disorder(*dialog, stops, reading), QString());
  // The way back is the same.
  QList<QWidget*> back = way(*dialog, Qt::Key_Backtab);
  std::reverse(stops.begin(), std::prev(stops.end()));
  QCOMPARE(back, stops);
}

void TestTabKey::inAnEditorWhileEditing_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QString>("title");
  QTest::addColumn<QString>("edit");
  QTest::addColumn<int>("stops");
  QTest::newRow("macros") << 7 << "Macros"
                          << "Edit macro" << 4;
  QTest::newRow("aliases") << 8 << "Aliases"
                           << "Edit alias" << 5;
  QTest::newRow("triggers") << 9 << "Triggers"
                            << "Edit trigger" << 5;
}

void TestTabKey::inAnEditorWhileEditing() {
  QFETCH(const int, action);
  QFETCH(const QString, title);
  QFETCH(const QString, edit);
  PlayWindow play(5000);
  play.profile.macros.append({.key = Qt::Key_F1, .commands = {"look"}});
  play.profile.triggers.append({.pattern = "rat", .commands = {"kill rat"}});
  play.profile.aliases.append({.name = "hi", .commands = {"say hi"}});
  QDialog* const dialog = play.dialogTitled(title);
  play.actions.at(action)->trigger();
  QVERIFY(QTest::qWaitForWindowActive(dialog));
  // By keys alone: Tab to the button, and Space.
  for (int tabs = 0; tabs < 9 && wordsOf(*QApplication::focusWidget()) != edit; ++tabs)
    QTest::keyClick(dialog->windowHandle(), Qt::Key_Tab);
  QTest::keyClick(dialog->windowHandle(), Qt::Key_Space);
  QCOMPARE(QApplication::focusWidget(), dialog->findChild<QPlainTextEdit*>());
  const QList<QWidget*> stops = way(*dialog);
  QTEST(static_cast<int>(stops.size()), "stops");
  QCOMPARE(disorder(*dialog, stops, Reading::Rows), QString());
}

void TestTabKey::inTheInterfaceSettings() {
  const PlayWindow play(5000);
  QDialog* const general = play.dialogTitled("General Settings");
  QDialog* const style = play.dialogTitled("Interface Settings");
  play.actions.at(5)->trigger();
  QVERIFY(QTest::qWaitForWindowActive(general));
  for (int tabs = 0; tabs < 40 && wordsOf(*QApplication::focusWidget()) != "Interface style";
       ++tabs)
    QTest::keyClick(general->windowHandle(), Qt::Key_Tab);
  QTest::keyClick(general->windowHandle(), Qt::Key_Space);
  QVERIFY(QTest::qWaitForWindowActive(style));
  const QList<QWidget*> stops = way(*style);
  QCOMPARE(stops.size(), 5);
  QCOMPARE(disorder(*style, stops, Reading::Rows), QString());
}

void TestTabKey::inTheWindow_data() {
  QTest::addColumn<QString>("opened");  // f: the bar to find words, r: the earlier text
  QTest::addColumn<QStringList>("order");
  const QStringList find{
      "Find in the game text", "Older hit",          "Newer hit", "Upper and lower case",
      "Whole words",           "Regular expression", "Close"};
  const QStringList earlier{"Earlier game text", "Border of the earlier game text"};
  const QStringList usual{"Game text", "Input bar"};
  QTest::newRow("nothing") << "" << usual;
  QTest::newRow("the bar to find words") << "f" << find + usual;
  QTest::newRow("the earlier text") << "r" << earlier + usual;
  QTest::newRow("the bar, then the text") << "fr" << find + earlier + usual;
  QTest::newRow("the text, then the bar") << "rf" << find + earlier + usual;
  QTest::newRow("both, and the text again") << "rfxr" << find + earlier + usual;
  QTest::newRow("both, and the text closed") << "rfxf" << find + usual;
}

void TestTabKey::inTheWindow() {
  QFETCH(const QString, opened);
  const PlayWindow play(5000);
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  const auto say = [&](int lines) {
    for (int line = 0; line < lines; ++line)
      play.pane->printInfo("words");
    play.pane->settle();
    QCoreApplication::processEvents();
  };
  say(100);
  for (const QChar step : opened) {
    if (step == 'f') {
      QTest::keyClick(play.bar, Qt::Key_F, Qt::ControlModifier);
      QVERIFY(play.pane->findChild<FindBar*>()->isVisible());
    } else if (step == 'r') {
      QTest::keyClick(play.pane, Qt::Key_PageUp);
      say(1);
      QVERIFY(play.pane->findChild<ReadBackView*>()->isVisible());
    } else {
      QTest::keyClick(play.pane->findChild<ReadBackView*>(), Qt::Key_Escape);
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
      QVERIFY(!play.pane->findChild<ReadBackView*>());
    }
  }
  play.bar->setFocus();
  QStringList order;
  for (const QWidget* stop : way(*play.window))
    order << wordsOf(*stop);
  QTEST(order, "order");
}

void TestTabKey::everyToolbarButtonHasAKey() {
  const PlayWindow play(5000);
  QCOMPARE(play.actions.size(), 11);
  for (const QAction* action : play.actions) {
    QVERIFY(!action->shortcut().isEmpty());
    QVERIFY(action->text().endsWith("(" + action->shortcut().toString() + ")"));
  }
}

void TestTabKey::aWrongOrderIsFound() {
  QWidget window;
  const QList<QRect> places{{0, 0, 40, 20}, {50, 0, 40, 20}, {0, 30, 40, 20}, {50, 30, 40, 20}};
  QList<QWidget*> stops;
  for (const QRect& place : places) {
    stops << new QPushButton(QString::number(stops.size()), &window);
    stops.last()->setGeometry(place);
  }
  window.show();
  QVERIFY(QTest::qWaitForWindowActive(&window));
  QCOMPARE(disorder(window, stops, Reading::Rows), QString());
  const QList<QWidget*> inColumns{stops[0], stops[2], stops[1], stops[3]};
  QVERIFY(!disorder(window, inColumns, Reading::Rows).isEmpty());
  QVERIFY(!disorder(window, {stops[0], stops[1], stops[2]}, Reading::Rows).isEmpty());
  QWidget bar;  // the last row of a window that is read in columns
  for (QWidget* stop : stops)
    stop->setParent(&bar);
  stops << new QPushButton("Apply", &bar);
  stops.last()->setGeometry(0, 90, 40, 20);
  bar.show();
  for (QWidget* stop : stops)
    stop->show();
  QCOMPARE(disorder(bar, {stops[0], stops[2], stops[1], stops[3], stops[4]}, Reading::Columns),
           QString());
  QVERIFY(!disorder(bar, stops, Reading::Columns).isEmpty());
}

KELMORA_GUI_TEST_MAIN(TestTabKey)
#include "tst_tabkey.moc"
