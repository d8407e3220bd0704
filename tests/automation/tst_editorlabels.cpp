// The rules of the two editors whose labels the player types.

#include <QApplication>
#include <QClipboard>

#include "AnyEditor.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"

class TestEditorLabels : public EditorTest {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase_data() { addEditors({"trigger", "alias"}); }
  void init() { makeEditor(); }
  void cleanup() { dropEditor(); }

  void savingStoresAndWritesTheLabel();
  void anEmptyLabelIsRefused();
  void aLabelOfSpacesIsSaved();
  void pastedLineBreaksAreDropped_data();
  void pastedLineBreaksAreDropped();
  void lineBreaksPutThereOtherwiseAreDroppedOnSave();
  void anUnchangedLabelKeepsItsCharacters();
  void anUnchangedLongLabelIsKeptWhole();
  void anotherEntrysLabelIsAccepted();
  void cancelRestoresTheStoredLabel();
  void enterInTheLabelFieldPressesNothing();

  void addAppendsThePlaceholder();
  void addToAnEmptyTable();
  void addingTwiceIsRefused();
  void addingAfterRenamingIsAccepted();
  void anAdditionThatCannotBeWrittenGoesUnsaid();

 private:
  [[nodiscard]] QLineEdit* label() { return controls().label; }
  [[nodiscard]] ExpectedDialog emptyRefused() {
    return ExpectedDialog::information(
        words().title("Save"), QStringLiteral("Invalid %1 specified.").arg(words().labelWord));
  }
  [[nodiscard]] QStringList labels() {
    QStringList all;
    for (const AnyEntry& entry : editor().entries())
      all << entry.label;
    return all;
  }
};

void TestEditorLabels::savingStoresAndWritesTheLabel() {
  editor().open({{"a", {"1"}}, {"b", {"2"}}, {"c", {}}});
  controls().list->setCurrentIndex(1);
  click(controls().edit);
  retype(controls().commands, "look\nsay {*}");
  retype(label(), "You are {*}.");
  click(controls().save);
  QCOMPARE(editor().entries(),
           QList<AnyEntry>({{"a", {"1"}}, {"You are {*}.", {"look", "say {*}"}}, {"c", {}}}));
  QCOMPARE(controls().items(), QStringList({"a", "You are {*}.", "c"}));
  QCOMPARE(controls().list->currentIndex(), 1);
  QCOMPARE(controls().enabled(), browsing);
  QCOMPARE(fileBytes(), editor().fileText());
}

void TestEditorLabels::anEmptyLabelIsRefused() {
  editor().open({{"k", {"kill"}}});
  click(controls().edit);
  retype(label(), "");
  retype(controls().commands, "changed");
  const DialogAnswers answers{emptyRefused()};
  click(controls().save);
  QVERIFY(answers.allCame());
  QCOMPARE(controls().enabled(), editing());
  QCOMPARE(controls().commands->toPlainText(), QStringLiteral("changed"));
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"k", {"kill"}}}));
  QCOMPARE(fileBytes(), untouched);
}

void TestEditorLabels::aLabelOfSpacesIsSaved() {
  editor().open({{"k", {}}});
  click(controls().edit);
  retype(label(), "  ");
  click(controls().save);
  QCOMPARE(labels(), QStringList("  "));
}

void TestEditorLabels::pastedLineBreaksAreDropped_data() {
  QTest::addColumn<QString>("pasted");
  QTest::addColumn<QString>("shown");
  const auto row = [](const char* name, const QString& pasted, const QString& shown) {
    QTest::newRow(name) << pasted << shown;
  };
  row("a line feed", "a\nb", "kabz");
  row("a carriage return", "a\rb", "kabz");
  row("both, and more of them", "\r\na\n\nb\r\n", "kabz");
  row("a vertical tab and a form feed", "a\vb\fc", "kabcz");
  row("the line breaks of Unicode", QStringLiteral("a\u2028b\u2029c\u0085d"), "kabcdz");
  row("nothing but line breaks", "\n\r", "kz");
  row("a tab and other blanks stay", QStringLiteral("a\tb \u00a0c"),
      QStringLiteral("ka\tb \u00a0cz"));
}

void TestEditorLabels::pastedLineBreaksAreDropped() {
  QFETCH(const QString, pasted);
  QFETCH(const QString, shown);
  editor().open({{"kz", {"kill"}}});
  click(controls().edit);
  label()->setFocus();
  label()->setCursorPosition(1);
  QApplication::clipboard()->setText(pasted);
  QTest::keyClick(label(), Qt::Key_V, Qt::ControlModifier);
  QCOMPARE(label()->text(), shown);
  QCOMPARE(label()->cursorPosition(), shown.size() - 1);
  click(controls().save);
  QCOMPARE(labels(), QStringList(shown));
  QCOMPARE(controls().items(), QStringList(shown));
  QCOMPARE(fileBytes(), editor().fileText());
}

void TestEditorLabels::lineBreaksPutThereOtherwiseAreDroppedOnSave() {
  editor().open({{"k", {"kill"}}});
  click(controls().edit);
  label()->setText("\n\r");
  const DialogAnswers answers{emptyRefused()};
  click(controls().save);
  QVERIFY(answers.allCame());
  label()->setText("a\nb");
  click(controls().save);
  QCOMPARE(labels(), QStringList("ab"));
  QCOMPARE(label()->text(), QStringLiteral("ab"));
  QCOMPARE(controls().items(), QStringList("ab"));
}

void TestEditorLabels::anUnchangedLabelKeepsItsCharacters() {
  const QString before = QStringLiteral("wait\u0085");
  editor().open({{before, {"kill"}}});
  click(controls().edit);
  click(controls().save);
  QCOMPARE(labels(), QStringList(before));
}

void TestEditorLabels::anUnchangedLongLabelIsKeptWhole() {
  const QString before(40'000, u'x');
  editor().open({{before, {}}});
  click(controls().edit);
  click(controls().save);
  QVERIFY(labels() == QStringList(before));
}

void TestEditorLabels::anotherEntrysLabelIsAccepted() {
  editor().open({{"k", {"first"}}, {"home", {"second"}}});
  controls().list->setCurrentIndex(1);
  click(controls().edit);
  retype(label(), "k");
  click(controls().save);
  QCOMPARE(controls().items(), QStringList({"k", "k"}));
  QCOMPARE(labels(), QStringList({"k", "k"}));
}

void TestEditorLabels::cancelRestoresTheStoredLabel() {
  editor().open({{"k", {"kill"}}, {"home", {"recall"}}});
  controls().list->setCurrentIndex(1);
  click(controls().edit);
  retype(label(), "other");
  click(controls().cancel);
  QCOMPARE(label()->text(), QStringLiteral("home"));
  QCOMPARE(labels(), QStringList({"k", "home"}));
}

void TestEditorLabels::enterInTheLabelFieldPressesNothing() {
  editor().open({{"k", {"kill"}}});
  click(controls().edit);
  label()->setFocus();
  QTest::keyClick(editor().dialog().windowHandle(), Qt::Key_Return);
  QTest::keyClick(editor().dialog().windowHandle(), Qt::Key_Enter, Qt::KeypadModifier);
  QCOMPARE(controls().enabled(), editing());
  QVERIFY(editor().dialog().isVisible());
  QCOMPARE(fileBytes(), untouched);
}

void TestEditorLabels::addAppendsThePlaceholder() {
  editor().open({{"k", {"kill"}}});
  click(controls().add);
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"k", {"kill"}}, {words().placeholder, {}}}));
  QCOMPARE(controls().items(), QStringList({"k", words().placeholder}));
  QCOMPARE(controls().list->currentIndex(), 1);
  QCOMPARE(label()->text(), words().placeholder);
  QCOMPARE(controls().commands->toPlainText(), QString());
  QCOMPARE(controls().enabled(), browsing);
  QCOMPARE(fileBytes(), editor().fileText());
}

void TestEditorLabels::addToAnEmptyTable() {
  editor().open({});
  click(controls().add);
  QCOMPARE(controls().list->currentIndex(), 0);
  QCOMPARE(label()->text(), words().placeholder);
  QCOMPARE(controls().enabled(), browsing);
}

void TestEditorLabels::addingTwiceIsRefused() {
  editor().open({});
  click(controls().add);
  QVERIFY(put(file(), untouched));
  const DialogAnswers answers{
      ExpectedDialog::information(words().title("Add"), words().placeholderTaken)};
  click(controls().add);
  QVERIFY(answers.allCame());
  QCOMPARE(labels(), QStringList(words().placeholder));
  QCOMPARE(controls().list->count(), 1);
  QCOMPARE(fileBytes(), untouched);
}

void TestEditorLabels::addingAfterRenamingIsAccepted() {
  editor().open({});
  click(controls().add);
  click(controls().edit);
  retype(label(), words().placeholder.toUpper());
  click(controls().save);
  click(controls().add);
  QCOMPARE(controls().items(), QStringList({words().placeholder.toUpper(), words().placeholder}));
}

void TestEditorLabels::anAdditionThatCannotBeWrittenGoesUnsaid() {
  QVERIFY(QFile::remove(file()));
  QVERIFY(QDir().mkdir(file()));
  editor().open({});
  click(controls().add);
  QCOMPARE(QApplication::activeModalWidget(), &editor().dialog());
  QCOMPARE(controls().items(), QStringList(words().placeholder));
  QVERIFY(QDir(file()).exists());
}

KELMORA_GUI_TEST_MAIN(TestEditorLabels)
#include "tst_editorlabels.moc"
