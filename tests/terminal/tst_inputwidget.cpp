#include <QApplication>
#include <QSet>
#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/view/InputHost.h"
#include "terminal/view/InputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// Records what the bar calls.
class RecordingHost : public InputHost {
 public:
  void submitInput() override { calls << "submit"; }
  void historyOlder() override { calls << "older"; }
  void historyNewer() override { calls << "newer"; }
  bool dispatchMacro(int key) override {
    calls << QStringLiteral("macro %1").arg(key, 0, 16);
    return macroKeys.contains(key);
  }
  [[nodiscard]] bool claimsShortcut(QKeyCombination keys) const override { return claimed == keys; }

  QStringList calls;
  QSet<int> macroKeys;
  QKeyCombination claimed = Qt::Key_unknown;
};

}  // namespace

class TestInputWidget : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void routes_data();
  void routes();
  void cursorKeysMoveTheCursor_data();
  void cursorKeysMoveTheCursor();
  void aBoundKeyTypesNothing();
  void aBoundEnterDoesNotSubmit();
  void aBoundEscapeKeepsTheText();
  void controlCharactersMoveTheCursorWithoutSelecting();
  void anyKeyTakesTheFocus();
  void aClaimedShortcutIsLeftToTheToolbar();
  void anUnclaimedEditingKeyIsTheBars();
  void declaresNoSlotsOrSignals();

 private:
  RecordingHost* host_ = nullptr;
  QWidget* window_ = nullptr;
  InputWidget* bar_ = nullptr;
};

void TestInputWidget::init() {
  host_ = new RecordingHost;
  window_ = new QWidget;
  bar_ = new InputWidget(*host_, window_);
  window_->show();
  QVERIFY(QTest::qWaitForWindowActive(window_));
}

void TestInputWidget::cleanup() {
  delete window_;
  delete host_;
}

void TestInputWidget::routes_data() {
  QTest::addColumn<int>("key");
  QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
  QTest::addColumn<QStringList>("calls");
  QTest::addColumn<QString>("text");

  const Qt::KeyboardModifiers none;
  const QStringList nothing;
  const auto row = [](const char* name, int key, Qt::KeyboardModifiers modifiers,
                      const QStringList& calls, const char* text = "text") {
    QTest::newRow(name) << key << modifiers << calls << QString::fromLatin1(text);
  };
  const auto macro = [](int key) { return QStringLiteral("macro %1").arg(key, 0, 16); };

  row("Up browses to older lines", Qt::Key_Up, none, {"older"});
  row("Down browses to newer lines", Qt::Key_Down, none, {"newer"});
  row("Up with Shift browses", Qt::Key_Up, Qt::ShiftModifier, {"older"});
  row("Up with Control browses", Qt::Key_Up, Qt::ControlModifier, {"older"});
  row("Down with Alt browses", Qt::Key_Down, Qt::AltModifier, {"newer"});
  row("Down with Shift and Control browses", Qt::Key_Down, Qt::ShiftModifier | Qt::ControlModifier,
      {"newer"});
  row("Left never reaches macros", Qt::Key_Left, none, nothing);
  row("Right never reaches macros", Qt::Key_Right, none, nothing);
  row("Home never reaches macros", Qt::Key_Home, none, nothing);
  row("End never reaches macros", Qt::Key_End, none, nothing);
  row("keypad Up is offered to the macros", Qt::Key_Up, Qt::KeypadModifier, {macro(Qt::Key_Up)});
  row("keypad Down is offered to the macros", Qt::Key_Down, Qt::KeypadModifier,
      {macro(Qt::Key_Down)});
  row("keypad Left is offered to the macros", Qt::Key_Left, Qt::KeypadModifier,
      {macro(Qt::Key_Left)});
  row("keypad Home is offered to the macros", Qt::Key_Home, Qt::KeypadModifier,
      {macro(Qt::Key_Home)});
  row("keypad Right is offered to the macros", Qt::Key_Right, Qt::KeypadModifier,
      {macro(Qt::Key_Right)});
  row("keypad End is offered to the macros", Qt::Key_End, Qt::KeypadModifier, {macro(Qt::Key_End)});
  row("a keypad digit is offered to the macros", Qt::Key_5, Qt::KeypadModifier, {macro(Qt::Key_5)},
      "text5");
  row("Insert is offered to the macros", Qt::Key_Insert, none, {macro(Qt::Key_Insert)});
  row("Page Up is offered to the macros", Qt::Key_PageUp, none, {macro(Qt::Key_PageUp)});
  row("Page Down is offered to the macros", Qt::Key_PageDown, none, {macro(Qt::Key_PageDown)});
  row("Clear is offered to the macros", Qt::Key_Clear, none, {macro(Qt::Key_Clear)});
  row("Control and P browse to older lines", Qt::Key_P, Qt::ControlModifier, {"older"});
  row("Control and N browse to newer lines", Qt::Key_N, Qt::ControlModifier, {"newer"});
  row("Control, Alt and P browse as well", Qt::Key_P, Qt::ControlModifier | Qt::AltModifier,
      {"older"});
  row("F5 is offered to the macros", Qt::Key_F5, none, {macro(Qt::Key_F5)});
  row("Shift and F5 are offered without the Shift", Qt::Key_F5, Qt::ShiftModifier,
      {macro(Qt::Key_F5)});
  row("Control and F5 are no macro", Qt::Key_F5, Qt::ControlModifier, nothing);
  row("Alt and F5 are no macro", Qt::Key_F5, Qt::AltModifier, nothing);
  row("a letter is offered, then typed", Qt::Key_A, none, {macro(Qt::Key_A)}, "texta");
  row("Escape is offered, then empties the bar", Qt::Key_Escape, none, {macro(Qt::Key_Escape)}, "");
  row("Control and Escape empty the bar unoffered", Qt::Key_Escape, Qt::ControlModifier, nothing,
      "");
  row("Return is offered, then submits", Qt::Key_Return, none, {macro(Qt::Key_Return), "submit"});
  row("keypad Enter is offered, then submits", Qt::Key_Enter, Qt::KeypadModifier,
      {macro(Qt::Key_Enter), "submit"});
  row("Control and Return submit unoffered", Qt::Key_Return, Qt::ControlModifier, {"submit"});
}

void TestInputWidget::routes() {
  QFETCH(const int, key);
  QFETCH(const Qt::KeyboardModifiers, modifiers);
  QFETCH(const QStringList, calls);
  QFETCH(const QString, text);
  bar_->setText("text");
  QTest::keyClick(bar_, static_cast<Qt::Key>(key), modifiers);
  // Pressing Shift is a key press as well, and could have a macro like any other.
  host_->calls.removeAll(QStringLiteral("macro %1").arg(int(Qt::Key_Shift), 0, 16));
  QCOMPARE(host_->calls, calls);
  QCOMPARE(bar_->text(), text);
}

void TestInputWidget::cursorKeysMoveTheCursor_data() {
  QTest::addColumn<int>("key");
  QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
  QTest::addColumn<int>("position");
  const Qt::KeyboardModifiers none;
  const Qt::KeyboardModifiers keypad(Qt::KeypadModifier);
  QTest::newRow("Left") << int(Qt::Key_Left) << none << 1;
  QTest::newRow("Right") << int(Qt::Key_Right) << none << 3;
  QTest::newRow("Home") << int(Qt::Key_Home) << none << 0;
  QTest::newRow("End") << int(Qt::Key_End) << none << 4;
  QTest::newRow("keypad Left without a macro") << int(Qt::Key_Left) << keypad << 1;
  QTest::newRow("keypad Right without a macro") << int(Qt::Key_Right) << keypad << 3;
  QTest::newRow("keypad Home without a macro") << int(Qt::Key_Home) << keypad << 0;
  QTest::newRow("keypad End without a macro") << int(Qt::Key_End) << keypad << 4;
}

void TestInputWidget::cursorKeysMoveTheCursor() {
  QFETCH(const int, key);
  QFETCH(const Qt::KeyboardModifiers, modifiers);
  QFETCH(const int, position);
  bar_->setText("text");
  bar_->setCursorPosition(2);
  QTest::keyClick(bar_, static_cast<Qt::Key>(key), modifiers);
  QCOMPARE(bar_->cursorPosition(), position);
  QVERIFY(!bar_->hasSelectedText());
}

void TestInputWidget::aBoundKeyTypesNothing() {
  host_->macroKeys = {Qt::Key_A};
  QTest::keyClicks(bar_, "abA");
  QCOMPARE(bar_->text(), QString("b"));
}

void TestInputWidget::aBoundEnterDoesNotSubmit() {
  host_->macroKeys = {Qt::Key_Return};
  QTest::keyClick(bar_, Qt::Key_Return);
  QVERIFY(!host_->calls.contains("submit"));
}

void TestInputWidget::aBoundEscapeKeepsTheText() {
  host_->macroKeys = {Qt::Key_Escape};
  bar_->setText("text");
  QTest::keyClick(bar_, Qt::Key_Escape);
  QCOMPARE(bar_->text(), QString("text"));
}

void TestInputWidget::controlCharactersMoveTheCursorWithoutSelecting() {
  bar_->setText("abc");
  QTest::keyClick(bar_, Qt::Key_J, Qt::ControlModifier);
  QCOMPARE(bar_->cursorPosition(), 2);
  QTest::keyClick(bar_, Qt::Key_J, Qt::ControlModifier);
  QCOMPARE(bar_->cursorPosition(), 1);
  QTest::keyClick(bar_, Qt::Key_K, Qt::ControlModifier);
  QCOMPARE(bar_->cursorPosition(), 2);
  QVERIFY(!bar_->hasSelectedText());
  QCOMPARE(bar_->text(), QString("abc"));
  QCOMPARE(host_->calls, QStringList());
}

void TestInputWidget::anyKeyTakesTheFocus() {
  bar_->clearFocus();
  QVERIFY(!bar_->hasFocus());
  QTest::keyClick(bar_, Qt::Key_Shift);
  QVERIFY(bar_->hasFocus());
}

void TestInputWidget::aClaimedShortcutIsLeftToTheToolbar() {
  const QKeyCombination combination(Qt::ControlModifier, Qt::Key_A);
  host_->claimed = combination;
  QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_A, Qt::ControlModifier);
  event.ignore();
  QApplication::sendEvent(bar_, &event);
  QVERIFY(!event.isAccepted());
}

void TestInputWidget::anUnclaimedEditingKeyIsTheBars() {
  QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_A, Qt::ControlModifier);
  event.ignore();
  QApplication::sendEvent(bar_, &event);
  QVERIFY(event.isAccepted());
}

void TestInputWidget::declaresNoSlotsOrSignals() {
  const QMetaObject* meta = bar_->metaObject();
  QCOMPARE(meta->methodCount(), meta->methodOffset());
}

KELMORA_GUI_TEST_MAIN(TestInputWidget)
#include "tst_inputwidget.moc"
