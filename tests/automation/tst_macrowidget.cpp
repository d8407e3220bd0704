// What only the macro editor has to do: its labels are the names of keys. The rules
// that it shares with other editors are tested in tst_editors and tst_editorlooks.

#include <QApplication>
#include <QTest>

#include "EditorControls.h"
#include "automation/editors/KeyPressWidget.h"
#include "automation/editors/MacroWidget.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/OwnFolder.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

const QString file = QStringLiteral("macros.txt");
const QByteArray untouched = "\nmacro Key_F1\nlook\n/macro\n";
const QString browsing = QStringLiteral("edit list add delete close");
const QString browsingNothing = QStringLiteral("list add delete close");

enum class Then { Okay, CloseWindow };

/// The dialog that captures a key, with these pressed in it before it is closed.
ExpectedDialog keyCapture(const QList<Qt::Key>& keys, Then then = Then::Okay) {
  return ExpectedDialog::of<KeyPressWidget>([keys, then](KeyPressWidget& dialog) {
    for (const Qt::Key key : keys)
      QTest::keyClick(dialog.windowHandle(), key);
    if (then == Then::Okay)
      click(buttonOf(dialog, QStringLiteral("Okay")));
    else
      dialog.close();
  });
}

}  // namespace

class TestMacroWidget : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void openingListsTheKeyNames();

  void addBindsTheCapturedKey_data();
  void addBindsTheCapturedKey();
  void withoutAKeyNothingIsAdded_data();
  void withoutAKeyNothingIsAdded();
  void aBoundKeyIsRefused();
  void eachUseStartsWithoutAKey();

 private:
  void open(const QList<MacroEntry>& entries);

  std::unique_ptr<OwnFolder> folder_;
  AutomationFiles files_;
  std::unique_ptr<MacroTable> table_;
  std::unique_ptr<MacroWidget> editor_;
  std::unique_ptr<EditorControls> controls_;
};

void TestMacroWidget::init() {
  folder_ = std::make_unique<OwnFolder>();
  QVERIFY(folder_->isValid());
  QVERIFY(put(file, untouched));
  table_ = std::make_unique<MacroTable>();
  editor_ = std::make_unique<MacroWidget>(*table_, files_, nullptr);
  controls_ = std::make_unique<EditorControls>(*editor_, QStringLiteral("macro"));
  QVERIFY(controls_->complete());
}

void TestMacroWidget::cleanup() {
  controls_.reset();
  editor_.reset();
  table_.reset();
  folder_.reset();
}

void TestMacroWidget::open(const QList<MacroEntry>& entries) {
  for (const MacroEntry& entry : entries)
    table_->append(entry);
  editor_->showEditor();
  QVERIFY(QTest::qWaitForWindowActive(editor_.get()));
}

void TestMacroWidget::openingListsTheKeyNames() {
  open({{Qt::Key_F5, {"north"}}, {Qt::Key_Insert, {}}, {65, {}}, {-23, {}}});
  QCOMPARE(controls_->items(),
           QStringList({"Key_F5", "NUMPAD0", "A", QString(QChar(char16_t{0xFFE9}))}));
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("north\n"));
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(controls_->focused(), QStringLiteral("list"));
}

void TestMacroWidget::addBindsTheCapturedKey_data() {
  QTest::addColumn<QList<Qt::Key>>("keys");
  QTest::addColumn<int>("code");
  QTest::addColumn<QString>("name");
  QTest::newRow("a function key") << QList{Qt::Key_F7} << 0x01000036 << "Key_F7";
  QTest::newRow("a letter") << QList{Qt::Key_A} << 65 << "A";
  QTest::newRow("the space bar") << QList{Qt::Key_Space} << 32 << " ";
  QTest::newRow("the last of several keys")
      << QList{Qt::Key_F7, Qt::Key_Tab, Qt::Key_Up} << 0x01000013 << "NUMPAD8";
}

void TestMacroWidget::addBindsTheCapturedKey() {
  QFETCH(QList<Qt::Key>, keys);
  QFETCH(int, code);
  QFETCH(QString, name);
  open({{Qt::Key_F5, {"north"}}});
  const DialogAnswers answers{keyCapture(keys)};
  click(controls_->add);
  QVERIFY(answers.allCame());
  QCOMPARE(table_->entries(), QList<MacroEntry>({{Qt::Key_F5, {"north"}}, {code, {}}}));
  QCOMPARE(controls_->items(), QStringList({"Key_F5", name}));
  QCOMPARE(controls_->list->currentIndex(), 1);
  QCOMPARE(controls_->commands->toPlainText(), QString());
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(contentsOf(file), QByteArray(""));
}

void TestMacroWidget::withoutAKeyNothingIsAdded_data() {
  QTest::addColumn<QList<Qt::Key>>("keys");
  QTest::addColumn<bool>("withOkay");
  QTest::newRow("Okay without any key") << QList<Qt::Key>() << true;
  QTest::newRow("Okay after a key that cannot be bound") << QList{Qt::Key_Escape} << true;
  QTest::newRow("a good key, then a bad one") << QList{Qt::Key_F7, Qt::Key_Shift} << true;
  QTest::newRow("a good key, then the window closed") << QList{Qt::Key_F7} << false;
}

void TestMacroWidget::withoutAKeyNothingIsAdded() {
  QFETCH(QList<Qt::Key>, keys);
  QFETCH(bool, withOkay);
  open({});
  const DialogAnswers answers{keyCapture(keys, withOkay ? Then::Okay : Then::CloseWindow)};
  click(controls_->add);
  QVERIFY(answers.allCame());
  QCOMPARE(table_->size(), 0);
  QCOMPARE(controls_->list->count(), 0);
  QCOMPARE(controls_->enabled(), browsingNothing);
  QCOMPARE(contentsOf(file), untouched);
}

void TestMacroWidget::aBoundKeyIsRefused() {
  open({{Qt::Key_F5, {"north"}}});
  const DialogAnswers answers{
      keyCapture({Qt::Key_F5}),
      ExpectedDialog::information("Add Macro", "A macro has already been bound to that key.")};
  click(controls_->add);
  QVERIFY(answers.allCame());
  QCOMPARE(table_->entries(), QList<MacroEntry>({{Qt::Key_F5, {"north"}}}));
  QCOMPARE(controls_->list->count(), 1);
  QCOMPARE(contentsOf(file), untouched);
}

void TestMacroWidget::eachUseStartsWithoutAKey() {
  open({});
  {
    const DialogAnswers answers{keyCapture({Qt::Key_F5})};
    click(controls_->add);
  }
  const DialogAnswers answers{keyCapture({})};
  click(controls_->add);
  QVERIFY(answers.allCame());
  QCOMPARE(table_->size(), 1);
}

KELMORA_GUI_TEST_MAIN(TestMacroWidget)
#include "tst_macrowidget.moc"
