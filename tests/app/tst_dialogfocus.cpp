#include <QApplication>
#include <QDialog>
#include <QFocusEvent>
#include <functional>

#include "PlayWindow.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/ScratchMain.h"

namespace {

/// Remembers for which reasons a widget got the focus.
class FocusReasons : public QObject {
 public:
  explicit FocusReasons(QWidget& watched) { watched.installEventFilter(this); }

  QList<Qt::FocusReason> seen;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::FocusIn)
      seen << static_cast<QFocusEvent*>(event)->reason();
    return false;
  }
};

}  // namespace

/// Where the keyboard goes once a dialog is gone: into the input bar, in which
/// the player may have typed half a line.
class TestDialogFocus : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void afterADialogTheBarHasTheKeyboard_data();
  void afterADialogTheBarHasTheKeyboard();
  void afterTheInterfaceSettingsTheGeneralOnesHaveTheKeyboard_data();
  void afterTheInterfaceSettingsTheGeneralOnesHaveTheKeyboard();
  void afterAFileDialogTheBarHasTheKeyboard_data();
  void afterAFileDialogTheBarHasTheKeyboard();
  void theBarIsNotEnteredAsByTheTabKey_data();
  void theBarIsNotEnteredAsByTheTabKey();
  void theHelpOpensWithTheBarReady();

 private:
  /// In the words of the table of ways: a button's text, "Escape" or "window".
  static void close(QDialog& dialog, const QString& way) {
    if (way == "Escape")
      QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
    else if (way == "window")
      dialog.close();
    else
      buttonOf(dialog, way)->click();
  }
  /// Half a line stands in the bar, with the cursor within it, and the pane
  /// has the focus.
  static void typeHalfALine(const PlayWindow& play) {
    QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
    QTest::keyClicks(play.bar, "kill or");
    play.bar->setCursorPosition(4);
    play.pane->setFocus();
    QCOMPARE(QApplication::focusWidget(), play.pane);
  }
  static void checkTheBarIsReady(const PlayWindow& play) {
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::focusWidget(), play.bar, 1000);
    QCOMPARE(QApplication::activeWindow(), play.window.get());
    QVERIFY(!play.bar->hasSelectedText());
    QCOMPARE(play.bar->cursorPosition(), 4);
    QTest::keyClicks(QApplication::focusWidget(), "an");
    QCOMPARE(play.bar->text(), QString("killan or"));
  }
};

void TestDialogFocus::init() {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestDialogFocus::afterADialogTheBarHasTheKeyboard_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QString>("title");
  QTest::addColumn<QString>("way");
  const auto rows = [](int action, const char* title, const QStringList& buttons) {
    for (const QString& way : buttons + QStringList{"Escape", "window"})
      QTest::addRow("%s, closed by %s", title, qPrintable(way)) << action << QString(title) << way;
  };
  rows(5, "General Settings", {"Apply", "Cancel"});
  rows(6, "Proxy Settings", {"Apply", "Cancel"});
  rows(7, "Macros", {"Close"});
  rows(8, "Aliases", {"Close"});
  rows(9, "Triggers", {"Close"});
  rows(10, "Kelmora Help", {"Close"});
}

void TestDialogFocus::afterADialogTheBarHasTheKeyboard() {
  QFETCH(const int, action);
  QFETCH(const QString, title);
  QFETCH(const QString, way);
  const PlayWindow play(5000);
  typeHalfALine(play);
  QDialog* dialog = play.dialogTitled(title);
  play.actions.at(action)->trigger();
  QVERIFY(QTest::qWaitForWindowActive(dialog));
  QCOMPARE(play.window->focusWidget(), play.bar);
  dialog->resize(dialog->size() + QSize(10, 10));
  QCoreApplication::processEvents();
  QCOMPARE(QApplication::activeWindow(), dialog);
  // Beside the help one can click into the pane, and come back to close it.
  play.pane->setFocus();
  close(*dialog, way);
  QVERIFY(!dialog->isVisible());
  checkTheBarIsReady(play);
}

void TestDialogFocus::afterTheInterfaceSettingsTheGeneralOnesHaveTheKeyboard_data() {
  QTest::addColumn<QString>("way");
  for (const char* way : {"Apply", "Cancel", "Escape", "window"})
    QTest::addRow("closed by %s", way) << QString(way);
}

void TestDialogFocus::afterTheInterfaceSettingsTheGeneralOnesHaveTheKeyboard() {
  QFETCH(const QString, way);
  const PlayWindow play(5000);
  typeHalfALine(play);
  QDialog* general = play.dialogTitled("General Settings");
  QDialog* style = play.dialogTitled("Interface Settings");
  play.actions.at(5)->trigger();
  QVERIFY(QTest::qWaitForWindowActive(general));
  buttonOf(*general, "Interface style")->click();
  QVERIFY(QTest::qWaitForWindowActive(style));
  close(*style, way);
  QVERIFY(!style->isVisible());
  QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), general, 1000);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  QVERIFY(!general->isVisible());
  checkTheBarIsReady(play);
}

void TestDialogFocus::afterAFileDialogTheBarHasTheKeyboard_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QString>("name");
  QTest::newRow("the session, saved") << 2 << "session.html";
  QTest::newRow("the session, cancelled") << 2 << "";
  QTest::newRow("an export") << 3 << "my.settings";
  QTest::newRow("an export, cancelled") << 3 << "";
  QTest::newRow("an import") << 4 << "my.settings";
  QTest::newRow("an import, cancelled") << 4 << "";
}

void TestDialogFocus::afterAFileDialogTheBarHasTheKeyboard() {
  QFETCH(const int, action);
  QFETCH(const QString, name);
  const PlayWindow play(5000);
  typeHalfALine(play);
  const DialogAnswers answers{ExpectedDialog::file(name)};
  play.actions.at(action)->trigger();
  QVERIFY(answers.allCame());
  checkTheBarIsReady(play);
}

void TestDialogFocus::theBarIsNotEnteredAsByTheTabKey_data() {
  QTest::addColumn<int>("action");
  QTest::newRow("Connect") << 0;
  QTest::newRow("Disconnect") << 1;
}

void TestDialogFocus::theBarIsNotEnteredAsByTheTabKey() {
  QFETCH(const int, action);
  const PlayWindow play(5000);
  typeHalfALine(play);
  const FocusReasons reasons(*play.bar);
  play.actions.at(action)->setEnabled(true);
  play.actions.at(action)->trigger();
  QCOMPARE(reasons.seen, QList<Qt::FocusReason>{Qt::OtherFocusReason});
  checkTheBarIsReady(play);
}

void TestDialogFocus::theHelpOpensWithTheBarReady() {
  const PlayWindow play(5000);
  typeHalfALine(play);
  play.actions.at(10)->trigger();
  QDialog* help = play.dialogTitled("Kelmora Help");
  QVERIFY(QTest::qWaitForWindowActive(help));
  // Back at the game, the help still beside it.
  play.window->activateWindow();
  checkTheBarIsReady(play);
  QVERIFY(help->isVisible());
}

KELMORA_GUI_TEST_MAIN(TestDialogFocus)
#include "tst_dialogfocus.moc"
