// What all three editors do with a table and its file.

#include <QApplication>
#include <QSignalSpy>

#include "AnyEditor.h"
#include "support/DialogAnswers.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"

class TestEditors : public EditorTest {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase_data() { addEditors({"macro", "trigger", "alias"}); }
  void init() { makeEditor(); }
  void cleanup() { dropEditor(); }

  void startsInBrowsing();
  void openingListsTheTableAndSelectsTheFirstEntry();
  void openingWithAnEmptyTableLeavesNothingToEdit();
  void openingAgainDropsAnEditLeftOpen();
  void choosingAnEntryShowsIt();
  void anIndexThatIsNoEntryEmptiesTheFields_data();
  void anIndexThatIsNoEntryEmptiesTheFields();

  void editSwitchesToEditing();
  void savingStoresTheCommandsAndWritesTheFile();
  void savingUntouchedAddsAnEmptyCommandEachTime();
  void cancelRestoresTheStoredCommands();
  void undoDoesNotBringBackAnotherEntry();

  void deleteAsksAndRemoves();
  void deletingTheFirstSelectsTheLast();
  void deletingTheOnlyEntryLeavesNothingToEdit();
  void anythingButYesKeepsTheEntry_data();
  void anythingButYesKeepsTheEntry();
  void deletingFromAnEmptyTableAsksAndDoesNothing();

  void closeSavesNothing_data();
  void closeSavesNothing();
  void aTableChangedMeanwhileIsNeverMisread();
  void aFileThatCannotBeWrittenGoesUnsaid();
  void tenThousandEntriesAreListedAtOneGo();

 private:
  [[nodiscard]] QString shownCommands() { return controls().commands->toPlainText(); }
  /// The question that Delete asks, answered with a button or a key.
  template <typename Answer>
  [[nodiscard]] ExpectedDialog question(Answer answer) {
    return ExpectedDialog::question(
        words().title("Delete"), QStringLiteral("Really delete this %1?").arg(words().one), answer);
  }
};

void TestEditors::startsInBrowsing() {
  QCOMPARE(controls().enabled(), browsingNothing);
  QVERIFY(editor().dialog().isHidden());
}

void TestEditors::openingListsTheTableAndSelectsTheFirstEntry() {
  editor().open({{"A", {"kill orc", "look"}}, {"B", {}}, {"A", {"other"}}});
  QCOMPARE(controls().items(), QStringList({"A", "B", "A"}));
  QCOMPARE(controls().list->currentIndex(), 0);
  QVERIFY(controls().list->itemIcon(0).isNull());
  QVERIFY(showsLabel("A"));
  QCOMPARE(shownCommands(), QStringLiteral("kill orc\nlook\n"));
  QVERIFY(controls().commands->textCursor().atEnd());
  QCOMPARE(controls().enabled(), browsing);
  QCOMPARE(controls().focused(), QStringLiteral("list"));
  QCOMPARE(fileBytes(), untouched);
}

void TestEditors::openingWithAnEmptyTableLeavesNothingToEdit() {
  editor().open({});
  QCOMPARE(controls().list->count(), 0);
  QCOMPARE(controls().enabled(), browsingNothing);
  QCOMPARE(shownCommands(), QString());
  QVERIFY(showsLabel(""));
}

void TestEditors::openingAgainDropsAnEditLeftOpen() {
  editor().open({{"A", {"kill"}}, {"B", {}}});
  controls().list->setCurrentIndex(1);
  click(controls().edit);
  retype(controls().commands, "half");
  if (controls().label)
    retype(controls().label, "half");
  click(controls().close);
  QCOMPARE(shownCommands(), QStringLiteral("half"));
  QVERIFY(showsLabel("half"));

  editor().open({{"C", {}}});
  QCOMPARE(controls().items(), QStringList({"A", "B", "C"}));
  QCOMPARE(controls().list->currentIndex(), 0);
  QCOMPARE(shownCommands(), QStringLiteral("kill\n"));
  QVERIFY(showsLabel("A"));
  QCOMPARE(controls().enabled(), browsing);

  editor().dialog().close();
  editor().clear();
  editor().dialog().showEditor();
  QCOMPARE(controls().enabled(), browsingNothing);
  QCOMPARE(shownCommands(), QString());
}

void TestEditors::choosingAnEntryShowsIt() {
  editor().open({{"A", {"kill"}}, {"B", {"recall", "", "look"}}});
  QTest::keyClick(controls().list, Qt::Key_Down);
  QCOMPARE(controls().list->currentIndex(), 1);
  QVERIFY(showsLabel("B"));
  QCOMPARE(shownCommands(), QStringLiteral("recall\n\nlook\n"));
  QVERIFY(controls().commands->textCursor().atEnd());
}

void TestEditors::anIndexThatIsNoEntryEmptiesTheFields_data() {
  QTest::addColumn<int>("index");
  QTest::newRow("none") << -1;
  QTest::newRow("one past the end") << 1;
  QTest::newRow("far below") << std::numeric_limits<int>::min();
  QTest::newRow("far above") << std::numeric_limits<int>::max();
}

void TestEditors::anIndexThatIsNoEntryEmptiesTheFields() {
  QFETCH(int, index);
  editor().open({{"A", {"kill"}}});
  const auto select = [this](int to) {
    return QMetaObject::invokeMethod(&editor().dialog(), "selectionChanged", Q_ARG(int, to));
  };
  QVERIFY(select(index));
  QVERIFY(showsLabel(""));
  QCOMPARE(shownCommands(), QString());
  QCOMPARE(controls().enabled(), browsingNothing);
  QVERIFY(select(0));
  QVERIFY(showsLabel("A"));
  QCOMPARE(controls().enabled(), browsing);
}

void TestEditors::editSwitchesToEditing() {
  editor().open({{"A", {"kill"}}});
  click(controls().edit);
  QCOMPARE(controls().enabled(), editing());
  QCOMPARE(controls().focused(), QStringLiteral("commands"));
}

void TestEditors::savingStoresTheCommandsAndWritesTheFile() {
  editor().open({{"A", {"1"}}, {"B", {"2"}}, {"C", {}}});
  controls().list->setCurrentIndex(1);
  click(controls().edit);
  retype(controls().commands, "look\n\nnorth");
  click(controls().save);
  QCOMPARE(editor().entries(),
           QList<AnyEntry>({{"A", {"1"}}, {"B", {"look", "", "north"}}, {"C", {}}}));
  QCOMPARE(controls().items(), QStringList({"A", "B", "C"}));
  QCOMPARE(controls().list->currentIndex(), 1);
  QCOMPARE(controls().enabled(), browsing);
  QCOMPARE(controls().focused(), QStringLiteral("list"));
  QCOMPARE(fileBytes(), editor().fileText());
  QVERIFY(QFile::exists(file()));
}

void TestEditors::savingUntouchedAddsAnEmptyCommandEachTime() {
  editor().open({{"A", {"a", "b"}}});
  click(controls().edit);
  click(controls().save);
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"A", {"a", "b", ""}}}));
  QCOMPARE(fileBytes(), editor().fileText());
  // The field still shows the text that was saved. Only when the entry is chosen again,
  // it shows the stored commands with a line break behind each.
  editor().dialog().showEditor();
  click(controls().edit);
  click(controls().save);
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"A", {"a", "b", "", ""}}}));
}

void TestEditors::cancelRestoresTheStoredCommands() {
  editor().open({{"A", {"kill"}}, {"B", {"recall"}}});
  controls().list->setCurrentIndex(1);
  click(controls().edit);
  retype(controls().commands, "nothing");
  click(controls().cancel);
  QVERIFY(showsLabel("B"));
  QCOMPARE(shownCommands(), QStringLiteral("recall\n"));
  QCOMPARE(controls().enabled(), browsing);
  QCOMPARE(controls().focused(), QStringLiteral("list"));
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"A", {"kill"}}, {"B", {"recall"}}}));
  QCOMPARE(fileBytes(), untouched);
}

void TestEditors::undoDoesNotBringBackAnotherEntry() {
  editor().open({{"A", {"kill"}}, {"B", {"recall"}}});
  controls().list->setCurrentIndex(1);
  click(controls().edit);
  controls().commands->undo();
  QCOMPARE(shownCommands(), QStringLiteral("recall\n"));
  if (controls().label)
    controls().label->undo();
  QVERIFY(showsLabel("B"));
}

void TestEditors::deleteAsksAndRemoves() {
  editor().open({{"A", {"1"}}, {"B", {}}, {"C", {"3"}}});
  controls().list->setCurrentIndex(1);
  const DialogAnswers answers{question(QMessageBox::Yes)};
  click(controls().remove);
  QVERIFY(answers.allCame());
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"A", {"1"}}, {"C", {"3"}}}));
  QCOMPARE(controls().items(), QStringList({"A", "C"}));
  QCOMPARE(controls().list->currentIndex(), 1);
  QVERIFY(showsLabel("C"));
  QCOMPARE(shownCommands(), QStringLiteral("3\n"));
  QCOMPARE(controls().enabled(), browsing);
  QCOMPARE(fileBytes(), editor().fileText());
}

void TestEditors::deletingTheFirstSelectsTheLast() {
  editor().open({{"A", {}}, {"B", {}}, {"C", {}}});
  const DialogAnswers answers{question(QMessageBox::Yes)};
  click(controls().remove);
  QCOMPARE(controls().items(), QStringList({"B", "C"}));
  QCOMPARE(controls().list->currentIndex(), 1);
  QVERIFY(showsLabel("C"));
}

void TestEditors::deletingTheOnlyEntryLeavesNothingToEdit() {
  editor().open({{"A", {"1"}}});
  const DialogAnswers answers{question(QMessageBox::Yes)};
  click(controls().remove);
  QCOMPARE(editor().entries(), QList<AnyEntry>());
  QCOMPARE(controls().list->count(), 0);
  QVERIFY(showsLabel(""));
  QCOMPARE(shownCommands(), QString());
  QCOMPARE(controls().enabled(), browsingNothing);
  QCOMPARE(fileBytes(), QByteArray(""));
  QVERIFY(QFile::exists(file()));
}

void TestEditors::anythingButYesKeepsTheEntry_data() {
  QTest::addColumn<bool>("withKey");
  QTest::addColumn<int>("answer");
  QTest::newRow("No") << false << static_cast<int>(QMessageBox::No);
  QTest::newRow("Escape") << true << static_cast<int>(Qt::Key_Escape);
  QTest::newRow("a hasty Enter") << true << static_cast<int>(Qt::Key_Return);
}

void TestEditors::anythingButYesKeepsTheEntry() {
  QFETCH(bool, withKey);
  QFETCH(int, answer);
  editor().open({{"A", {"1"}}});
  const DialogAnswers answers{withKey ? question(static_cast<Qt::Key>(answer))
                                      : question(static_cast<QMessageBox::StandardButton>(answer))};
  click(controls().remove);
  QVERIFY(answers.allCame());
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"A", {"1"}}}));
  QCOMPARE(controls().list->count(), 1);
  QCOMPARE(fileBytes(), untouched);
}

void TestEditors::deletingFromAnEmptyTableAsksAndDoesNothing() {
  editor().open({});
  const DialogAnswers answers{question(QMessageBox::Yes)};
  click(controls().remove);
  QVERIFY(answers.allCame());
  QCOMPARE(controls().enabled(), browsingNothing);
  QCOMPARE(fileBytes(), untouched);
}

void TestEditors::closeSavesNothing_data() {
  QTest::addColumn<bool>("edited");
  QTest::addColumn<bool>("withEscape");
  QTest::newRow("the button while browsing") << false << false;
  QTest::newRow("the button while editing") << true << false;
  QTest::newRow("Escape while browsing") << false << true;
  QTest::newRow("Escape while editing") << true << true;
}

void TestEditors::closeSavesNothing() {
  QFETCH(bool, edited);
  QFETCH(bool, withEscape);
  editor().open({{"A", {"kill"}}});
  if (edited) {
    click(controls().edit);
    retype(controls().commands, "changed");
  }
  if (withEscape)
    QTest::keyClick(editor().dialog().windowHandle(), Qt::Key_Escape);
  else
    click(controls().close);
  QVERIFY(editor().dialog().isHidden());
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"A", {"kill"}}}));
  QCOMPARE(fileBytes(), untouched);
  QCOMPARE(shownCommands(), edited ? QStringLiteral("changed") : QStringLiteral("kill\n"));
}

void TestEditors::aTableChangedMeanwhileIsNeverMisread() {
  editor().open({{"A", {"1"}}, {"B", {"2"}}});
  controls().list->setCurrentIndex(1);
  click(controls().edit);
  retype(controls().commands, "changed");
  if (controls().label)
    retype(controls().label, "renamed");
  editor().removeAt(1);
  click(controls().save);
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"A", {"1"}}}));
  const QByteArray cancel = words().slot("cancel").chopped(2).toLatin1();
  QVERIFY(QMetaObject::invokeMethod(&editor().dialog(), cancel.constData()));
  QVERIFY(showsLabel(""));
  QCOMPARE(shownCommands(), QString());
  QCOMPARE(controls().enabled(), browsingNothing);
  const DialogAnswers answers{question(QMessageBox::Yes)};
  click(controls().remove);
  QCOMPARE(editor().entries().size(), 1);
}

void TestEditors::aFileThatCannotBeWrittenGoesUnsaid() {
  QVERIFY(QFile::remove(file()));
  QVERIFY(QDir().mkdir(file()));
  editor().open({{"A", {}}});
  click(controls().edit);
  retype(controls().commands, "look");
  click(controls().save);
  QCOMPARE(QApplication::activeModalWidget(), &editor().dialog());
  QCOMPARE(editor().entries(), QList<AnyEntry>({{"A", {"look"}}}));
  QVERIFY(QDir(file()).exists());
}

void TestEditors::tenThousandEntriesAreListedAtOneGo() {
  const auto label = [](int number) { return QString(QChar(0x4e00 + number)); };
  for (int number = 0; number < 10'000; ++number)
    editor().append({label(number), {"look"}});
  editor().open({});
  QSignalSpy selections(controls().list, &QComboBox::currentIndexChanged);
  ProcessorClock timer;
  timer.start();
  editor().dialog().showEditor();
  QVERIFY2(timer.elapsed() < 1000, "ten thousand entries take more than a second to list");
  QCOMPARE(selections.size(), 2);  // -1 when the old list goes, then 0
  QVERIFY(showsLabel(label(0)));

  controls().list->setCurrentIndex(9999);
  const DialogAnswers answers{question(QMessageBox::Yes)};
  click(controls().remove);
  QCOMPARE(editor().entries().size(), 9999);
  QCOMPARE(controls().list->currentIndex(), 9998);
  QVERIFY(showsLabel(label(9998)));
}

KELMORA_GUI_TEST_MAIN(TestEditors)
#include "tst_editors.moc"
