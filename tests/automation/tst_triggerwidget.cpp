// What only the trigger editor has to do. The rules that it shares with other editors
// are tested in tst_editors, tst_editorlabels and tst_editorlooks.

#include <QApplication>

#include "EditorControls.h"
#include "automation/editors/TriggerWidget.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/OwnFolder.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

/// Keeps the lists of commands that triggers run.
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
  void triggersFireAsStoredWhileOneIsEdited();
  void aLineBecomesATriggerThatIsReadyToBeEdited();
  void aLineThatHasATriggerOpensIt();
  void whatIsNotSavedLeavesNoTrace_data();
  void whatIsNotSavedLeavesNoTrace();
  void aNewTriggerNeedsAPattern();
};

void TestTriggerWidget::triggersFireAsStoredWhileOneIsEdited() {
  const OwnFolder folder;
  QVERIFY(folder.isValid());
  AutomationFiles files;
  TriggerTable table;
  table.append({"hungry", {"eat"}});
  TriggerWidget editor(table, files, nullptr);
  editor.showEditor();
  QVERIFY(QTest::qWaitForWindowActive(&editor));
  const EditorControls controls(editor, "trigger");
  QVERIFY(controls.complete());

  RecordingHost host;
  click(controls.edit);
  retype(controls.label, "thirsty");
  retype(controls.commands, "drink");
  table.check("You are hungry and thirsty", host);
  QCOMPARE(host.ran, QList<QStringList>({{"eat"}}));
  QCOMPARE(controls.commands->toPlainText(), QStringLiteral("drink"));
  click(controls.save);
  table.check("You are thirsty", host);
  table.check("You are hungry", host);
  QCOMPARE(host.ran, QList<QStringList>({{"eat"}, {"drink"}}));
}

void TestTriggerWidget::aLineBecomesATriggerThatIsReadyToBeEdited() {
  const OwnFolder folder;
  QVERIFY(folder.isValid());
  AutomationFiles files;
  TriggerTable table;
  table.append({"hungry", {"eat"}});
  TriggerWidget editor(table, files, nullptr);
  editor.showEditorFor("You feel 100% better");
  QVERIFY(QTest::qWaitForWindowActive(&editor));
  const EditorControls controls(editor, "trigger");
  QVERIFY(controls.complete());
  QCOMPARE(table.size(), 1);
  QCOMPARE(controls.items(), QStringList("hungry"));
  QCOMPARE(controls.list->currentIndex(), -1);
  QCOMPARE(controls.label->text(), QString("You feel 100% better"));
  QCOMPARE(controls.commands->toPlainText(), QString());
  QCOMPARE(controls.enabled(), QString("commands label save cancel close"));
  QVERIFY(controls.commands->hasFocus());
  retype(controls.commands, "smile");
  click(controls.save);
  QCOMPARE(table.entries(),
           QList<TriggerEntry>({{"hungry", {"eat"}}, {"You feel 100% better", {"smile"}}}));
  QCOMPARE(controls.items(), QStringList({"hungry", "You feel 100% better"}));
  QCOMPARE(controls.list->currentIndex(), 1);
  QCOMPARE(controls.enabled(), QString("edit list add delete close"));
  QCOMPARE(controls.focused(), QString("list"));
  RecordingHost host;
  table.check("Now: You feel 100% better.", host);
  QCOMPARE(host.ran, QList<QStringList>({{"smile"}}));
  QVERIFY(contentsOf("triggers.txt").contains("You feel 100% better"));
}

void TestTriggerWidget::aLineThatHasATriggerOpensIt() {
  const OwnFolder folder;
  QVERIFY(folder.isValid());
  AutomationFiles files;
  TriggerTable table;
  table.append({"You rest.", {"sleep"}});
  table.append({"hungry", {"eat"}});
  TriggerWidget editor(table, files, nullptr);
  editor.showEditorFor("You rest.");
  const EditorControls controls(editor, "trigger");
  QCOMPARE(table.size(), 2);
  QCOMPARE(controls.label->text(), QString("You rest."));
  QCOMPARE(controls.commands->toPlainText(), QString("sleep\n"));
  QVERIFY(controls.save->isEnabled());
}

void TestTriggerWidget::whatIsNotSavedLeavesNoTrace_data() {
  QTest::addColumn<QList<TriggerEntry>>("entries");
  QTest::addColumn<QByteArray>("way");
  const QList<TriggerEntry> two{{"hungry", {"eat"}}, {"thirsty", {"drink"}}};
  QTest::newRow("cancelled, with other triggers") << two << QByteArray("cancel");
  QTest::newRow("cancelled, as the first trigger") << QList<TriggerEntry>() << QByteArray("cancel");
  QTest::newRow("closed, with other triggers") << two << QByteArray("close");
  QTest::newRow("closed, as the first trigger") << QList<TriggerEntry>() << QByteArray("close");
}

void TestTriggerWidget::whatIsNotSavedLeavesNoTrace() {
  QFETCH(const QList<TriggerEntry>, entries);
  QFETCH(const QByteArray, way);
  const OwnFolder folder;
  QVERIFY(folder.isValid());
  writeFile("triggers.txt", "as it was");
  AutomationFiles files;
  TriggerTable table;
  for (const TriggerEntry& entry : entries)
    table.append(entry);
  TriggerWidget editor(table, files, nullptr);
  editor.showEditorFor("You rest.");
  const EditorControls controls(editor, "trigger");
  retype(controls.commands, "sleep");
  retype(controls.label, "You sleep.");
  click(way == "cancel" ? controls.cancel : controls.close);
  if (way == "close")
    editor.showEditor();
  QCOMPARE(table.entries(), entries);
  QCOMPARE(contentsOf("triggers.txt"), QByteArray("as it was"));
  QCOMPARE(controls.list->count(), entries.size());
  QCOMPARE(controls.list->currentIndex(), entries.isEmpty() ? -1 : 0);
  QCOMPARE(controls.label->text(), entries.isEmpty() ? QString() : QString("hungry"));
  QCOMPARE(controls.commands->toPlainText(), entries.isEmpty() ? QString() : QString("eat\n"));
  QCOMPARE(controls.edit->isEnabled(), !entries.isEmpty());

  if (entries.isEmpty())
    return;
  // What is saved next is the entry that is shown.
  editor.editTrigger();
  retype(controls.commands, "cook");
  editor.saveTrigger();
  QCOMPARE(table.entries(), QList<TriggerEntry>({{"hungry", {"cook"}}, {"thirsty", {"drink"}}}));
}

void TestTriggerWidget::aNewTriggerNeedsAPattern() {
  const OwnFolder folder;
  QVERIFY(folder.isValid());
  AutomationFiles files;
  TriggerTable table;
  TriggerWidget editor(table, files, nullptr);
  editor.showEditorFor("You rest.");
  const EditorControls controls(editor, "trigger");
  retype(controls.commands, "sleep");
  retype(controls.label, "");
  const DialogAnswers answers{
      ExpectedDialog::information("Save Trigger", "Invalid trigger pattern specified.")};
  click(controls.save);
  QVERIFY(answers.allCame());
  QCOMPARE(table.size(), 0);
  retype(controls.label, "You sleep.");
  click(controls.save);
  QCOMPARE(table.entries(), QList<TriggerEntry>({{"You sleep.", {"sleep"}}}));
}

KELMORA_GUI_TEST_MAIN(TestTriggerWidget)
#include "tst_triggerwidget.moc"
