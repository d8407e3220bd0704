// What only the trigger editor has to do. The rules that it shares with other editors
// are tested in tst_editors, tst_editorlabels and tst_editorlooks.

#include <QApplication>

#include "EditorControls.h"
#include "automation/editors/TriggerWidget.h"
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
  QCOMPARE(table.size(), 2);
  QCOMPARE(controls.label->text(), QString("You feel 100% better"));
  QVERIFY(controls.commands->hasFocus());
  retype(controls.commands, "smile");
  click(controls.save);
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

KELMORA_GUI_TEST_MAIN(TestTriggerWidget)
#include "tst_triggerwidget.moc"
