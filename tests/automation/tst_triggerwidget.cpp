#include <QApplication>
#include <QClipboard>
#include <QTest>

#include "EditorDriver.h"
#include "automation/editors/TriggerWidget.h"
#include "support/OwnFolder.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

const QString placeholder = QStringLiteral("<Enter your trigger pattern here>");
const QString file = QStringLiteral("triggers.txt");
const QString browsing = QStringLiteral("edit list add delete close");
const QString browsingNothing = QStringLiteral("list add delete close");
const QString editing = QStringLiteral("commands label save cancel close");

/// Keeps the commands that triggers run.
class RecordingHost : public TriggerHost {
 public:
  void setVariable(const QString& /*name*/, const QString& /*value*/) override {}
  void runActions(const QStringList& commands) override { ran << commands; }

  QList<QStringList> ran;
};

}  // namespace

class TestTriggerWidget : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void declaresItsSevenSlotsInOrder();
  void looksAsLaidOut();
  void openingListsThePatterns();
  void openingWithAnEmptyTableLeavesNothingToEdit();
  void savingStoresAndWritesCommandsAndPattern();
  void savingUntouchedAddsAnEmptyCommand();
  void pastedLineBreaksAreDropped();
  void anotherTriggersPatternIsAccepted();
  void anEmptyPatternIsRefused();
  void cancelRestoresTheStoredText();
  void addAppendsThePlaceholder();
  void addingTwiceIsRefused();
  void deleteAsksAndRemoves();
  void noKeepsTheTrigger();
  void deletingFromAnEmptyTableAsksAndDoesNothing();
  void closeSavesNothing();
  void triggersFireAsStoredWhileOneIsEdited();

 private:
  void open(const QList<TriggerEntry>& entries);

  std::unique_ptr<OwnFolder> folder_;
  AutomationFiles files_;
  std::unique_ptr<TriggerTable> table_;
  std::unique_ptr<TriggerWidget> editor_;
  std::unique_ptr<EditorControls> controls_;
};

void TestTriggerWidget::init() {
  folder_ = std::make_unique<OwnFolder>();
  QVERIFY(folder_->isValid());
  table_ = std::make_unique<TriggerTable>();
  editor_ = std::make_unique<TriggerWidget>(*table_, files_, nullptr);
  controls_ = std::make_unique<EditorControls>(*editor_, QStringLiteral("trigger"));
  QVERIFY(controls_->complete());
  QVERIFY(controls_->label);
}

void TestTriggerWidget::cleanup() {
  controls_.reset();
  editor_.reset();
  table_.reset();
  folder_.reset();
}

void TestTriggerWidget::open(const QList<TriggerEntry>& entries) {
  for (const TriggerEntry& entry : entries)
    table_->append(entry);
  editor_->showEditor();
  QVERIFY(QTest::qWaitForWindowActive(editor_.get()));
}

void TestTriggerWidget::declaresItsSevenSlotsInOrder() {
  QCOMPARE(slotsOf(TriggerWidget::staticMetaObject),
           QStringList({"selectionChanged(int)", "addTrigger()", "deleteTrigger()", "editTrigger()",
                        "saveTrigger()", "cancelTrigger()", "closeDialog()"}));
  QCOMPARE(TriggerWidget::staticMetaObject.superClass()->className(), "QDialog");
}

void TestTriggerWidget::looksAsLaidOut() {
  open({});
  QCOMPARE(editor_->windowTitle(), QStringLiteral("Triggers"));
  QVERIFY(!editor_->windowIcon().isNull());
  QCOMPARE(editor_->windowIcon().pixmap(32).toImage(),
           QIcon(":/icons/triggers.png").pixmap(32).toImage());
  QVERIFY(editor_->isModal());
  QCOMPARE(controls_->label->accessibleName(), QStringLiteral("Pattern"));
  QCOMPARE(controls_->list->accessibleName(), QStringLiteral("Triggers"));
  QVERIFY(controls_->commands->geometry().bottom() < controls_->label->y());
  QVERIFY(controls_->label->geometry().bottom() < controls_->edit->y());
}

void TestTriggerWidget::openingListsThePatterns() {
  open({{"{*} tells you", {"say hi"}}, {"hungry", {}}});
  QCOMPARE(controls_->items(), QStringList({"{*} tells you", "hungry"}));
  QCOMPARE(controls_->label->text(), QStringLiteral("{*} tells you"));
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("say hi\n"));
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(controls_->focused(), QStringLiteral("list"));
}

void TestTriggerWidget::openingWithAnEmptyTableLeavesNothingToEdit() {
  open({});
  QCOMPARE(controls_->enabled(), browsingNothing);
}

void TestTriggerWidget::savingStoresAndWritesCommandsAndPattern() {
  open({{"hungry", {}}, {"thirsty", {}}});
  click(controls_->edit);
  QCOMPARE(controls_->enabled(), editing);
  QCOMPARE(controls_->focused(), QStringLiteral("commands"));
  retype(controls_->commands, "eat bread\nsay {*}");
  retype(controls_->label, "You are {*}.");
  click(controls_->save);
  QCOMPARE(table_->entries(),
           QList<TriggerEntry>({{"You are {*}.", {"eat bread", "say {*}"}}, {"thirsty", {}}}));
  QCOMPARE(controls_->items(), QStringList({"You are {*}.", "thirsty"}));
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(contentsOf(file), QByteArray("\ntrigger \"You are {*}.\"\neat bread\nsay {*}\n/trigger\n"
                                        "\ntrigger \"thirsty\"\n/trigger\n"));
}

void TestTriggerWidget::savingUntouchedAddsAnEmptyCommand() {
  open({{"hungry", {"eat", "drink"}}});
  click(controls_->edit);
  click(controls_->save);
  QCOMPARE(table_->entries().at(0).commands, QStringList({"eat", "drink", ""}));
}

void TestTriggerWidget::pastedLineBreaksAreDropped() {
  open({{"hungry", {"eat"}}});
  click(controls_->edit);
  controls_->label->selectAll();
  QApplication::clipboard()->setText("You are hungry.\r\n");
  QTest::keyClick(controls_->label, Qt::Key_V, Qt::ControlModifier);
  click(controls_->save);
  QCOMPARE(table_->entries().at(0).pattern, QStringLiteral("You are hungry."));
  QVERIFY(contentsOf(file).startsWith("\ntrigger \"You are hungry.\"\neat\n"));
}

void TestTriggerWidget::anotherTriggersPatternIsAccepted() {
  open({{"a", {}}, {"b", {}}});
  click(controls_->edit);
  retype(controls_->label, "b");
  click(controls_->save);
  QCOMPARE(controls_->items(), QStringList({"b", "b"}));
  QCOMPARE(table_->entries().at(0).pattern, QStringLiteral("b"));
}

void TestTriggerWidget::anEmptyPatternIsRefused() {
  open({{"hungry", {"eat"}}});
  click(controls_->edit);
  retype(controls_->label, "");
  BoxAnswer answer(QMessageBox::Ok);
  click(controls_->save);
  QCOMPARE(answer.said(),
           BoxAnswer::information("Save Trigger", "Invalid trigger pattern specified."));
  QCOMPARE(controls_->enabled(), editing);
  QCOMPARE(table_->entries(), QList<TriggerEntry>({{"hungry", {"eat"}}}));
  QVERIFY(!QFile::exists(file));
}

void TestTriggerWidget::cancelRestoresTheStoredText() {
  open({{"hungry", {"eat"}}});
  click(controls_->edit);
  retype(controls_->label, "other");
  retype(controls_->commands, "nothing");
  click(controls_->cancel);
  QCOMPARE(controls_->label->text(), QStringLiteral("hungry"));
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("eat\n"));
  QCOMPARE(controls_->enabled(), browsing);
  QVERIFY(!QFile::exists(file));
}

void TestTriggerWidget::addAppendsThePlaceholder() {
  open({{"hungry", {"eat"}}});
  click(controls_->add);
  QCOMPARE(table_->entries(), QList<TriggerEntry>({{"hungry", {"eat"}}, {placeholder, {}}}));
  QCOMPARE(controls_->list->currentIndex(), 1);
  QCOMPARE(controls_->label->text(), placeholder);
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(contentsOf(file),
           QByteArray("\ntrigger \"hungry\"\neat\n/trigger\n"
                      "\ntrigger \"<Enter your trigger pattern here>\"\n/trigger\n"));
}

void TestTriggerWidget::addingTwiceIsRefused() {
  open({});
  click(controls_->add);
  BoxAnswer answer(QMessageBox::Ok);
  click(controls_->add);
  QCOMPARE(answer.said(), BoxAnswer::information(
                              "Add Trigger", "A trigger has already been bound to that pattern."));
  QCOMPARE(table_->size(), 1);
  QCOMPARE(controls_->list->count(), 1);
}

void TestTriggerWidget::deleteAsksAndRemoves() {
  open({{"a", {}}, {"b", {}}});
  BoxAnswer answer(QMessageBox::Yes);
  click(controls_->remove);
  QCOMPARE(answer.said(), BoxAnswer::question("Delete Trigger", "Really delete this trigger?"));
  QCOMPARE(table_->entries(), QList<TriggerEntry>({{"b", {}}}));
  QCOMPARE(controls_->items(), QStringList("b"));
  QCOMPARE(contentsOf(file), QByteArray("\ntrigger \"b\"\n/trigger\n"));
}

void TestTriggerWidget::noKeepsTheTrigger() {
  open({{"a", {}}});
  BoxAnswer answer(QMessageBox::No);
  click(controls_->remove);
  QVERIFY(!answer.said().isEmpty());
  QCOMPARE(table_->size(), 1);
  QVERIFY(!QFile::exists(file));
}

void TestTriggerWidget::deletingFromAnEmptyTableAsksAndDoesNothing() {
  open({});
  BoxAnswer answer(QMessageBox::Yes);
  click(controls_->remove);
  QVERIFY(!answer.said().isEmpty());
  QVERIFY(!QFile::exists(file));
}

void TestTriggerWidget::closeSavesNothing() {
  open({{"a", {}}});
  click(controls_->edit);
  retype(controls_->label, "other");
  click(controls_->close);
  QVERIFY(editor_->isHidden());
  QCOMPARE(table_->entries(), QList<TriggerEntry>({{"a", {}}}));
  QVERIFY(!QFile::exists(file));
}

void TestTriggerWidget::triggersFireAsStoredWhileOneIsEdited() {
  open({{"hungry", {"eat"}}});
  RecordingHost host;
  click(controls_->edit);
  retype(controls_->label, "thirsty");
  retype(controls_->commands, "drink");
  table_->check("You are hungry and thirsty", host);
  QCOMPARE(host.ran, QList<QStringList>({{"eat"}}));
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("drink"));
  click(controls_->save);
  table_->check("You are thirsty", host);
  table_->check("You are hungry", host);
  QCOMPARE(host.ran, QList<QStringList>({{"eat"}, {"drink"}}));
}

KELMORA_GUI_TEST_MAIN(TestTriggerWidget)
#include "tst_triggerwidget.moc"
