#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QInputMethodEvent>
#include <QLabel>
#include <QMimeData>
#include <QTest>

#include "automation/editors/KeyPressInput.h"
#include "automation/editors/KeyPressWidget.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/ScratchMain.h"

namespace {

constexpr qint32 noKey = -1;
const QString invalid = QStringLiteral("<Invalid>");

}  // namespace

class TestKeyPressWidget : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void declaresItsSlot();
  void looksAsLaidOut();
  void showsAndKeepsTheKey_data();
  void showsAndKeepsTheKey();
  void eachPressReplacesTheLast();
  void nothingElseWritesInTheField();
  void aShortcutOfTheWindowDoesNotTakeTheKey();
  void okayGivesTheKey();
  void closingOtherwiseGivesNone();
  void eachUseStartsAfresh();

 private:
  std::unique_ptr<KeyPressWidget> dialog_;
  KeyPressInput* input_ = nullptr;
  QPushButton* okay_ = nullptr;
};

void TestKeyPressWidget::init() {
  dialog_ = std::make_unique<KeyPressWidget>(nullptr);
  input_ = dialog_->findChild<KeyPressInput*>();
  okay_ = buttonOf(*dialog_, QStringLiteral("Okay"));
  QVERIFY(input_);
  QVERIFY(okay_);
}

void TestKeyPressWidget::cleanup() {
  dialog_.reset();
}

void TestKeyPressWidget::declaresItsSlot() {
  QCOMPARE(methodsOf(KeyPressWidget::staticMetaObject), QStringList("submitKey()"));
  QCOMPARE(KeyPressWidget::staticMetaObject.superClass()->className(), "QDialog");
  QCOMPARE(methodsOf(KeyPressInput::staticMetaObject), QStringList());
  QCOMPARE(KeyPressInput::staticMetaObject.superClass()->className(), "QLineEdit");
}

void TestKeyPressWidget::looksAsLaidOut() {
  dialog_->show();
  QVERIFY(dialog_->isModal());
  const auto* label = dialog_->findChild<QLabel*>();
  QVERIFY(label);
  QCOMPARE(label->text(), QStringLiteral("Hit a key:"));
  QVERIFY(label->geometry().bottom() < input_->y());
  QVERIFY(input_->geometry().bottom() < okay_->y());
  QVERIFY(!input_->accessibleName().isEmpty());
  QCOMPARE(input_->capturedKey(), noKey);
}

void TestKeyPressWidget::showsAndKeepsTheKey_data() {
  QTest::addColumn<int>("key");
  QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
  QTest::addColumn<QString>("shown");
  QTest::addColumn<int>("kept");
  const auto row = [](const char* name, int key, const QString& shown, int kept,
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::newRow(name) << key << modifiers << shown << kept;
  };

  for (int number = 1; number <= 12; ++number) {
    const QString name = QStringLiteral("Key_F%1").arg(number);
    const int code = 0x0100002F + number;
    row(qPrintable(name), code, name, code);
  }
  const int keypad[] = {0x01000006, 0x01000011, 0x01000015, 0x01000017, 0x01000012,
                        0x0100000B, 0x01000014, 0x01000010, 0x01000013, 0x01000016};
  for (int number = 0; number < 10; ++number) {
    const QString name = QStringLiteral("NUMPAD%1").arg(number);
    row(qPrintable(name + " on the keypad"), keypad[number], name, keypad[number],
        Qt::KeypadModifier);
    row(qPrintable(name + " beside it"), keypad[number], name, keypad[number]);
  }

  row("a letter is its capital", Qt::Key_A, "A", 65);
  row("a capital is the same key", Qt::Key_A, "A", 65, Qt::ShiftModifier);
  row("a digit", Qt::Key_1, "1", 0x31);
  row("a digit of the keypad", Qt::Key_1, "1", 0x31, Qt::KeypadModifier);
  row("a punctuation mark", Qt::Key_Semicolon, ";", 0x3B);
  row("the space bar", Qt::Key_Space, " ", 0x20);
  row("an accented letter", Qt::Key_Eacute, QString(QChar(0xC9)), 0xC9);
  row("the last code below 256", Qt::Key_ydiaeresis, QString(QChar(0xFF)), 0xFF);
  row("modifiers are not part of a function key", Qt::Key_F5, "Key_F5", Qt::Key_F5,
      Qt::ControlModifier | Qt::AltModifier);
  row("copy is a key", Qt::Key_C, "C", Qt::Key_C, Qt::ControlModifier);

  row("a letter beyond Latin-1", 0x0429, invalid, noKey);
  row("the first code from 256 on", 0x0100, invalid, noKey);
  row("F13", Qt::Key_F13, invalid, noKey);
  row("Escape", Qt::Key_Escape, invalid, noKey);
  row("Tab", Qt::Key_Tab, invalid, noKey);
  row("Tab backwards", Qt::Key_Backtab, invalid, noKey, Qt::ShiftModifier);
  row("Return", Qt::Key_Return, invalid, noKey);
  row("Enter of the keypad", Qt::Key_Enter, invalid, noKey, Qt::KeypadModifier);
  row("Backspace", Qt::Key_Backspace, invalid, noKey);
  row("Delete", Qt::Key_Delete, invalid, noKey);
  row("Shift", Qt::Key_Shift, invalid, noKey);
  row("Control", Qt::Key_Control, invalid, noKey);
  row("Alt", Qt::Key_Alt, invalid, noKey);
  row("the menu key", Qt::Key_Menu, invalid, noKey);
  row("a key nobody knows", Qt::Key_unknown, invalid, noKey);
}

void TestKeyPressWidget::showsAndKeepsTheKey() {
  QFETCH(int, key);
  QFETCH(Qt::KeyboardModifiers, modifiers);
  QFETCH(QString, shown);
  QFETCH(int, kept);
  bool stayed = false;
  QString text;
  qint32 captured = 0;
  const DialogAnswers answers{ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& dialog) {
    // Sent without a text, since the test library knows no text for many of the keys.
    QTest::sendKeyEvent(QTest::Click, dialog.windowHandle(), static_cast<Qt::Key>(key), QString(),
                        modifiers);
    stayed = dialog.isVisible() && input_->hasFocus();
    text = input_->text();
    captured = input_->capturedKey();
    QTest::mouseClick(okay_, Qt::LeftButton);
    dialog.reject();
  })};
  const qint32 given = dialog_->captureKey();
  QVERIFY(answers.allCame());
  QVERIFY2(stayed, "the key closed the dialog or moved the focus");
  QCOMPARE(text, shown);
  QCOMPARE(captured, kept);
  QCOMPARE(given, kept);
}

void TestKeyPressWidget::eachPressReplacesTheLast() {
  QTest::keyClick(input_, Qt::Key_F5);
  QTest::keyClick(input_, Qt::Key_B, Qt::NoModifier);
  QCOMPARE(input_->text(), QStringLiteral("B"));
  QCOMPARE(input_->capturedKey(), 66);
  QTest::keyClick(input_, Qt::Key_Escape);
  QCOMPARE(input_->text(), invalid);
  QCOMPARE(input_->capturedKey(), noKey);
  QTest::keyClick(input_, Qt::Key_F5);
  QCOMPARE(input_->text(), QStringLiteral("Key_F5"));
  QCOMPARE(input_->capturedKey(), 0x01000034);
}

void TestKeyPressWidget::nothingElseWritesInTheField() {
  QTest::keyClick(input_, Qt::Key_F5);
  QMimeData dragged;
  dragged.setText(QStringLiteral("dragged"));
  QDragEnterEvent drag(QPoint(5, 5), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(input_, &drag);
  QVERIFY(!drag.isAccepted());
  QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5));
  QCoreApplication::sendEvent(input_, &menu);
  QVERIFY(!QApplication::activePopupWidget());
  QInputMethodEvent composed;
  composed.setCommitString(QStringLiteral("composed"));
  QCoreApplication::sendEvent(input_, &composed);
  QCOMPARE(input_->text(), QStringLiteral("Key_F5"));
}

void TestKeyPressWidget::aShortcutOfTheWindowDoesNotTakeTheKey() {
  bool taken = false;
  auto* action = new QAction(dialog_.get());
  action->setShortcut(QKeySequence(Qt::Key_F5));
  connect(action, &QAction::triggered, dialog_.get(), [&] { taken = true; });
  dialog_->addAction(action);
  const DialogAnswers answers{ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& dialog) {
    QTest::keyClick(dialog.windowHandle(), Qt::Key_F5);
    QTest::mouseClick(okay_, Qt::LeftButton);
    dialog.reject();
  })};
  QCOMPARE(dialog_->captureKey(), 0x01000034);
  QVERIFY(!taken);
}

void TestKeyPressWidget::okayGivesTheKey() {
  const DialogAnswers answers{ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& dialog) {
    QTest::keyClick(dialog.windowHandle(), Qt::Key_F1);
    QTest::mouseClick(okay_, Qt::LeftButton);
    QVERIFY(dialog.isHidden());
  })};
  QCOMPARE(dialog_->captureKey(), 0x01000030);
  QVERIFY(answers.allCame());
}

void TestKeyPressWidget::closingOtherwiseGivesNone() {
  const DialogAnswers answers{ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& dialog) {
    QTest::keyClick(dialog.windowHandle(), Qt::Key_F1);
    dialog.close();
  })};
  QCOMPARE(dialog_->captureKey(), noKey);
  QVERIFY(answers.allCame());
}

void TestKeyPressWidget::eachUseStartsAfresh() {
  {
    const DialogAnswers answers{ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& dialog) {
      QTest::keyClick(dialog.windowHandle(), Qt::Key_F1);
      okay_->setFocus();
      QTest::mouseClick(okay_, Qt::LeftButton);
      dialog.reject();
    })};
    QCOMPARE(dialog_->captureKey(), 0x01000030);
  }
  const DialogAnswers answers{ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& dialog) {
    QCOMPARE(input_->text(), QString());
    QCOMPARE(input_->capturedKey(), noKey);
    QVERIFY(input_->hasFocus());
    dialog.close();
  })};
  QCOMPARE(dialog_->captureKey(), noKey);
  QVERIFY(answers.allCame());
}

KELMORA_GUI_TEST_MAIN(TestKeyPressWidget)
#include "tst_keypresswidget.moc"
