#include <QApplication>
#include <QClipboard>
#include <QFontMetricsF>
#include <QGridLayout>
#include <QListView>
#include <QSignalSpy>
#include <QTest>

#include "EditorDriver.h"
#include "automation/editors/AliasWidget.h"
#include "support/OwnFolder.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

const QString placeholder = QStringLiteral("<Enter your alias here>");
const QString file = QStringLiteral("aliases.txt");
const QString browsing = QStringLiteral("edit list add delete close");
const QString browsingNothing = QStringLiteral("list add delete close");
const QString editing = QStringLiteral("commands label save cancel close");

}  // namespace

class TestAliasWidget : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void declaresItsSevenSlotsInOrder();
  void looksAsLaidOut();
  void everyControlSaysWhatItIs();
  void theTabKeyFollowsTheReadingOrder();

  void startsInBrowsing();
  void openingListsTheTableAndSelectsTheFirstEntry();
  void openingWithAnEmptyTableLeavesNothingToEdit();
  void openingAgainDropsAnEditLeftOpen();
  void showingReturnsAtOnceAndBlocksTheOtherWindows();
  void choosingAnEntryShowsIt();
  void anIndexThatIsNoEntryEmptiesTheFields_data();
  void anIndexThatIsNoEntryEmptiesTheFields();

  void editSwitchesToEditing();
  void savingStoresAndWritesCommandsAndName();
  void savingUntouchedAddsAnEmptyCommandEachTime();
  void anEmptyNameIsRefused();
  void aNameOfSpacesIsSaved();
  void pastedLineBreaksAreDropped_data();
  void pastedLineBreaksAreDropped();
  void lineBreaksPutThereOtherwiseAreDroppedOnSave();
  void anUnchangedNameKeepsItsCharacters();
  void anotherAliasesNameIsAccepted();
  void anUnchangedLongNameIsKeptWhole();
  void cancelRestoresTheStoredText();
  void undoDoesNotBringBackAnotherEntry();

  void addAppendsThePlaceholder();
  void addToAnEmptyTable();
  void addingTwiceIsRefused();
  void addingAfterRenamingIsAccepted();

  void deleteAsksAndRemoves();
  void deletingTheFirstSelectsTheLast();
  void deletingTheOnlyEntryLeavesNothingToEdit();
  void anythingButYesKeepsTheEntry_data();
  void anythingButYesKeepsTheEntry();
  void deletingFromAnEmptyTableAsksAndDoesNothing();

  void closeSavesNothing_data();
  void closeSavesNothing();
  void enterInTheNameFieldPressesNothing();
  void enterPressesTheButtonThatHasTheFocus();
  void aTableChangedMeanwhileIsNeverMisread();
  void aFileThatCannotBeWrittenGoesUnsaid();
  void tenThousandEntriesAreListedAtOneGo();
  void disabledTextStaysLegibleInTheDark();

 private:
  void open(const QList<AliasEntry>& entries);

  std::unique_ptr<OwnFolder> folder_;
  AutomationFiles files_;
  std::unique_ptr<AliasTable> table_;
  std::unique_ptr<AliasWidget> editor_;
  std::unique_ptr<EditorControls> controls_;
};

void TestAliasWidget::init() {
  folder_ = std::make_unique<OwnFolder>();
  QVERIFY(folder_->isValid());
  table_ = std::make_unique<AliasTable>();
  editor_ = std::make_unique<AliasWidget>(*table_, files_, nullptr);
  controls_ = std::make_unique<EditorControls>(*editor_, QStringLiteral("alias"));
  QVERIFY(controls_->complete());
  QVERIFY(controls_->label);
}

void TestAliasWidget::cleanup() {
  controls_.reset();
  editor_.reset();
  table_.reset();
  folder_.reset();
}

void TestAliasWidget::open(const QList<AliasEntry>& entries) {
  for (const AliasEntry& entry : entries)
    table_->append(entry);
  editor_->showEditor();
  QVERIFY(QTest::qWaitForWindowActive(editor_.get()));
}

void TestAliasWidget::declaresItsSevenSlotsInOrder() {
  QCOMPARE(slotsOf(AliasWidget::staticMetaObject),
           QStringList({"selectionChanged(int)", "addAlias()", "deleteAlias()", "editAlias()",
                        "saveAlias()", "cancelAlias()", "closeDialog()"}));
  QCOMPARE(AliasWidget::staticMetaObject.superClass()->className(), "QDialog");
}

void TestAliasWidget::looksAsLaidOut() {
  open({{"k", {"kill"}}});
  QCOMPARE(editor_->windowTitle(), QStringLiteral("Aliases"));
  QVERIFY(!editor_->windowIcon().isNull());
  QCOMPARE(editor_->windowIcon().pixmap(32).toImage(),
           QIcon(":/icons/aliases.png").pixmap(32).toImage());
  QVERIFY(editor_->isModal());
  QCOMPARE(controls_->commands->lineWrapMode(), QPlainTextEdit::NoWrap);
  // Not every font of one pitch says that it is.
  const QFontMetricsF letters(controls_->commands->font());
  QCOMPARE(letters.horizontalAdvance("iiii"), letters.horizontalAdvance("MMMM"));

  const auto* grid = qobject_cast<QGridLayout*>(editor_->layout());
  QVERIFY(grid);
  QCOMPARE(grid->columnCount(), 1);
  QCOMPARE(grid->rowCount(), 5);
  const auto topOf = [](const QWidget* widget) { return widget->geometry().center().y(); };
  const EditorControls& c = *controls_;
  QVERIFY(c.commands->geometry().bottom() < c.label->y());
  QVERIFY(c.label->geometry().bottom() < c.edit->y());
  QVERIFY(c.edit->geometry().bottom() < c.list->y());
  QVERIFY(c.list->geometry().bottom() < c.close->y());
  QVERIFY(topOf(c.edit) == topOf(c.save) && topOf(c.save) == topOf(c.cancel));
  QVERIFY(qAbs(topOf(c.list) - topOf(c.add)) <= 1 && topOf(c.add) == topOf(c.remove));
  QVERIFY(c.edit->x() < c.save->x() && c.save->x() < c.cancel->x());
  QVERIFY(c.list->x() < c.add->x() && c.add->x() < c.remove->x());
  // The list has half of its row, each button a quarter.
  editor_->resize(1600, 600);
  QTRY_VERIFY(c.list->width() > 600);
  QVERIFY(qAbs(c.add->width() - c.remove->width()) <= 1);
  QVERIFY(qAbs(c.list->width() - 2 * c.add->width()) <= 3);
}

void TestAliasWidget::everyControlSaysWhatItIs() {
  QCOMPARE(controls_->commands->accessibleName(), QStringLiteral("Commands"));
  QCOMPARE(controls_->label->accessibleName(), QStringLiteral("Alias"));
  QCOMPARE(controls_->list->accessibleName(), QStringLiteral("Aliases"));
  QVERIFY(!controls_->commands->toolTip().isEmpty());
  QVERIFY(!controls_->label->toolTip().isEmpty());
}

void TestAliasWidget::theTabKeyFollowsTheReadingOrder() {
  open({{"k", {"kill"}}});
  const auto walk = [&](qsizetype steps) {
    QStringList visited{controls_->focused()};
    for (qsizetype step = 0; step < steps; ++step) {
      QTest::keyClick(editor_->windowHandle(), Qt::Key_Tab);
      visited << controls_->focused();
    }
    return visited.join(u' ');
  };
  QCOMPARE(walk(5), QStringLiteral("list add delete close edit list"));
  click(controls_->edit);
  QCOMPARE(walk(5), QStringLiteral("commands label save cancel close commands"));
}

void TestAliasWidget::startsInBrowsing() {
  QCOMPARE(controls_->enabled(), browsingNothing);
  QVERIFY(editor_->isHidden());
}

void TestAliasWidget::openingListsTheTableAndSelectsTheFirstEntry() {
  open({{"k", {"kill orc", "look"}}, {"home", {}}, {"k", {"other"}}});
  QCOMPARE(controls_->items(), QStringList({"k", "home", "k"}));
  QCOMPARE(controls_->list->currentIndex(), 0);
  QVERIFY(controls_->list->itemIcon(0).isNull());
  QCOMPARE(controls_->label->text(), QStringLiteral("k"));
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("kill orc\nlook\n"));
  QVERIFY(controls_->commands->textCursor().atEnd());
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(controls_->focused(), QStringLiteral("list"));
  QVERIFY(!QFile::exists(file));
}

void TestAliasWidget::openingWithAnEmptyTableLeavesNothingToEdit() {
  open({});
  QCOMPARE(controls_->list->count(), 0);
  QCOMPARE(controls_->enabled(), browsingNothing);
  QCOMPARE(controls_->commands->toPlainText(), QString());
  QCOMPARE(controls_->label->text(), QString());
}

void TestAliasWidget::openingAgainDropsAnEditLeftOpen() {
  open({{"k", {"kill"}}, {"home", {}}});
  controls_->list->setCurrentIndex(1);
  click(controls_->edit);
  retype(controls_->label, "half");
  click(controls_->close);
  QCOMPARE(controls_->label->text(), QStringLiteral("half"));

  table_->append({"new", {}});
  editor_->showEditor();
  QCOMPARE(controls_->items(), QStringList({"k", "home", "new"}));
  QCOMPARE(controls_->list->currentIndex(), 0);
  QCOMPARE(controls_->label->text(), QStringLiteral("k"));
  QCOMPARE(controls_->enabled(), browsing);

  editor_->close();
  table_->clear();
  editor_->showEditor();
  QCOMPARE(controls_->enabled(), browsingNothing);
  QCOMPARE(controls_->commands->toPlainText(), QString());
}

void TestAliasWidget::showingReturnsAtOnceAndBlocksTheOtherWindows() {
  open({});
  QVERIFY(editor_->isVisible());
  QCOMPARE(QApplication::activeModalWidget(), editor_.get());
}

void TestAliasWidget::choosingAnEntryShowsIt() {
  open({{"k", {"kill"}}, {"home", {"recall", "", "look"}}});
  QTest::keyClick(controls_->list, Qt::Key_Down);
  QCOMPARE(controls_->list->currentIndex(), 1);
  QCOMPARE(controls_->label->text(), QStringLiteral("home"));
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("recall\n\nlook\n"));
  QVERIFY(controls_->commands->textCursor().atEnd());
}

void TestAliasWidget::anIndexThatIsNoEntryEmptiesTheFields_data() {
  QTest::addColumn<int>("index");
  QTest::newRow("none") << -1;
  QTest::newRow("one past the end") << 1;
  QTest::newRow("far below") << std::numeric_limits<int>::min();
  QTest::newRow("far above") << std::numeric_limits<int>::max();
}

void TestAliasWidget::anIndexThatIsNoEntryEmptiesTheFields() {
  QFETCH(int, index);
  open({{"k", {"kill"}}});
  editor_->selectionChanged(index);
  QCOMPARE(controls_->label->text(), QString());
  QCOMPARE(controls_->commands->toPlainText(), QString());
  QCOMPARE(controls_->enabled(), browsingNothing);
  editor_->selectionChanged(0);
  QCOMPARE(controls_->label->text(), QStringLiteral("k"));
  QCOMPARE(controls_->enabled(), browsing);
}

void TestAliasWidget::editSwitchesToEditing() {
  open({{"k", {"kill"}}});
  click(controls_->edit);
  QCOMPARE(controls_->enabled(), editing);
  QCOMPARE(controls_->focused(), QStringLiteral("commands"));
}

void TestAliasWidget::savingStoresAndWritesCommandsAndName() {
  open({{"a", {"1"}}, {"b", {"2"}}, {"c", {}}});
  controls_->list->setCurrentIndex(1);
  click(controls_->edit);
  retype(controls_->commands, "look\n\nnorth");
  retype(controls_->label, "ln");
  click(controls_->save);
  QCOMPARE(table_->entries(),
           QList<AliasEntry>({{"a", {"1"}}, {"ln", {"look", "", "north"}}, {"c", {}}}));
  QCOMPARE(controls_->items(), QStringList({"a", "ln", "c"}));
  QCOMPARE(controls_->list->currentIndex(), 1);
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(controls_->focused(), QStringLiteral("list"));
  QCOMPARE(contentsOf(file), QByteArray("\nalias \"a\"\n1\n/alias\n"
                                        "\nalias \"ln\"\nlook\n\nnorth\n/alias\n"
                                        "\nalias \"c\"\n/alias\n"));
}

void TestAliasWidget::savingUntouchedAddsAnEmptyCommandEachTime() {
  open({{"x", {"a", "b"}}});
  click(controls_->edit);
  click(controls_->save);
  QCOMPARE(table_->entries().at(0).commands, QStringList({"a", "b", ""}));
  QCOMPARE(contentsOf(file), QByteArray("\nalias \"x\"\na\nb\n\n/alias\n"));
  // The field still shows what was saved; only choosing the entry again shows
  // the stored commands with their line breaks.
  editor_->showEditor();
  click(controls_->edit);
  click(controls_->save);
  QCOMPARE(table_->entries().at(0).commands, QStringList({"a", "b", "", ""}));
}

void TestAliasWidget::anEmptyNameIsRefused() {
  open({{"k", {"kill"}}});
  click(controls_->edit);
  retype(controls_->label, "");
  retype(controls_->commands, "changed");
  BoxAnswer answer(QMessageBox::Ok);
  click(controls_->save);
  QCOMPARE(answer.said(), BoxAnswer::information("Save Alias", "Invalid alias name specified."));
  QCOMPARE(controls_->enabled(), editing);
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("changed"));
  QCOMPARE(table_->entries(), QList<AliasEntry>({{"k", {"kill"}}}));
  QVERIFY(!QFile::exists(file));
}

void TestAliasWidget::aNameOfSpacesIsSaved() {
  open({{"k", {}}});
  click(controls_->edit);
  retype(controls_->label, "  ");
  click(controls_->save);
  QCOMPARE(table_->entries().at(0).name, QStringLiteral("  "));
}

void TestAliasWidget::pastedLineBreaksAreDropped_data() {
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

void TestAliasWidget::pastedLineBreaksAreDropped() {
  QFETCH(const QString, pasted);
  QFETCH(const QString, shown);
  open({{"kz", {"kill"}}});
  click(controls_->edit);
  controls_->label->setFocus();
  controls_->label->setCursorPosition(1);
  QApplication::clipboard()->setText(pasted);
  QTest::keyClick(controls_->label, Qt::Key_V, Qt::ControlModifier);
  QCOMPARE(controls_->label->text(), shown);
  QCOMPARE(controls_->label->cursorPosition(), shown.size() - 1);
  click(controls_->save);
  QCOMPARE(table_->entries().at(0).name, shown);
  QCOMPARE(controls_->items(), QStringList{shown});
  AliasTable loaded;
  QVERIFY(files_.loadAliases(loaded));
  QCOMPARE(loaded.entries(), table_->entries());
}

void TestAliasWidget::lineBreaksPutThereOtherwiseAreDroppedOnSave() {
  open({{"k", {"kill"}}});
  click(controls_->edit);
  controls_->label->setText("\n\r");
  BoxAnswer answer(QMessageBox::Ok);
  click(controls_->save);
  QCOMPARE(answer.said(), BoxAnswer::information("Save Alias", "Invalid alias name specified."));
  controls_->label->setText("a\nb");
  click(controls_->save);
  QCOMPARE(table_->entries().at(0).name, QStringLiteral("ab"));
  QCOMPARE(controls_->label->text(), QStringLiteral("ab"));
  QCOMPARE(controls_->items(), QStringList("ab"));
}

void TestAliasWidget::anUnchangedNameKeepsItsCharacters() {
  const QString name = QStringLiteral("wait\u0085");
  open({{name, {"kill"}}});
  click(controls_->edit);
  click(controls_->save);
  QCOMPARE(table_->entries().at(0).name, name);
}

void TestAliasWidget::anotherAliasesNameIsAccepted() {
  open({{"k", {"first"}}, {"home", {"second"}}});
  controls_->list->setCurrentIndex(1);
  click(controls_->edit);
  retype(controls_->label, "k");
  click(controls_->save);
  QCOMPARE(controls_->items(), QStringList({"k", "k"}));
  QCOMPARE(table_->entries().at(1).name, QStringLiteral("k"));
  QVERIFY(table_->commandsOf("k"));
  QCOMPARE(*table_->commandsOf("k"), QStringList("first"));
}

void TestAliasWidget::anUnchangedLongNameIsKeptWhole() {
  const QString name(40000, u'x');
  open({{name, {}}});
  click(controls_->edit);
  click(controls_->save);
  QVERIFY(table_->entries().at(0).name == name);
}

void TestAliasWidget::cancelRestoresTheStoredText() {
  open({{"k", {"kill"}}, {"home", {"recall"}}});
  controls_->list->setCurrentIndex(1);
  click(controls_->edit);
  retype(controls_->label, "other");
  retype(controls_->commands, "nothing");
  click(controls_->cancel);
  QCOMPARE(controls_->label->text(), QStringLiteral("home"));
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("recall\n"));
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(controls_->focused(), QStringLiteral("list"));
  QCOMPARE(table_->entries().at(1), AliasEntry({"home", {"recall"}}));
  QVERIFY(!QFile::exists(file));
}

void TestAliasWidget::undoDoesNotBringBackAnotherEntry() {
  open({{"k", {"kill"}}, {"home", {"recall"}}});
  controls_->list->setCurrentIndex(1);
  click(controls_->edit);
  controls_->commands->undo();
  controls_->label->undo();
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("recall\n"));
  QCOMPARE(controls_->label->text(), QStringLiteral("home"));
}

void TestAliasWidget::addAppendsThePlaceholder() {
  open({{"k", {"kill"}}});
  click(controls_->add);
  QCOMPARE(table_->entries(), QList<AliasEntry>({{"k", {"kill"}}, {placeholder, {}}}));
  QCOMPARE(controls_->items(), QStringList({"k", placeholder}));
  QCOMPARE(controls_->list->currentIndex(), 1);
  QCOMPARE(controls_->label->text(), placeholder);
  QCOMPARE(controls_->commands->toPlainText(), QString());
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(contentsOf(file), QByteArray("\nalias \"k\"\nkill\n/alias\n"
                                        "\nalias \"<Enter your alias here>\"\n/alias\n"));
}

void TestAliasWidget::addToAnEmptyTable() {
  open({});
  click(controls_->add);
  QCOMPARE(controls_->list->currentIndex(), 0);
  QCOMPARE(controls_->label->text(), placeholder);
  QCOMPARE(controls_->enabled(), browsing);
}

void TestAliasWidget::addingTwiceIsRefused() {
  open({});
  click(controls_->add);
  QVERIFY(QFile::remove(file));
  BoxAnswer answer(QMessageBox::Ok);
  click(controls_->add);
  QCOMPARE(answer.said(),
           BoxAnswer::information("Add Alias", "An alias already exists with that name."));
  QCOMPARE(table_->size(), 1);
  QCOMPARE(controls_->list->count(), 1);
  QVERIFY(!QFile::exists(file));
}

void TestAliasWidget::addingAfterRenamingIsAccepted() {
  open({});
  click(controls_->add);
  click(controls_->edit);
  retype(controls_->label, placeholder.toUpper());
  click(controls_->save);
  click(controls_->add);
  QCOMPARE(controls_->items(), QStringList({placeholder.toUpper(), placeholder}));
}

void TestAliasWidget::deleteAsksAndRemoves() {
  open({{"a", {"1"}}, {"b", {}}, {"c", {"3"}}});
  controls_->list->setCurrentIndex(1);
  BoxAnswer answer(QMessageBox::Yes);
  click(controls_->remove);
  QCOMPARE(answer.said(), BoxAnswer::question("Delete Alias", "Really delete this alias?"));
  QCOMPARE(table_->entries(), QList<AliasEntry>({{"a", {"1"}}, {"c", {"3"}}}));
  QCOMPARE(controls_->items(), QStringList({"a", "c"}));
  QCOMPARE(controls_->list->currentIndex(), 1);
  QCOMPARE(controls_->label->text(), QStringLiteral("c"));
  QCOMPARE(controls_->commands->toPlainText(), QStringLiteral("3\n"));
  QCOMPARE(controls_->enabled(), browsing);
  QCOMPARE(contentsOf(file), QByteArray("\nalias \"a\"\n1\n/alias\n\nalias \"c\"\n3\n/alias\n"));
}

void TestAliasWidget::deletingTheFirstSelectsTheLast() {
  open({{"a", {}}, {"b", {}}, {"c", {}}});
  BoxAnswer answer(QMessageBox::Yes);
  click(controls_->remove);
  QCOMPARE(controls_->items(), QStringList({"b", "c"}));
  QCOMPARE(controls_->list->currentIndex(), 1);
  QCOMPARE(controls_->label->text(), QStringLiteral("c"));
}

void TestAliasWidget::deletingTheOnlyEntryLeavesNothingToEdit() {
  open({{"a", {"1"}}});
  BoxAnswer answer(QMessageBox::Yes);
  click(controls_->remove);
  QCOMPARE(table_->size(), 0);
  QCOMPARE(controls_->list->count(), 0);
  QCOMPARE(controls_->label->text(), QString());
  QCOMPARE(controls_->commands->toPlainText(), QString());
  QCOMPARE(controls_->enabled(), browsingNothing);
  QCOMPARE(contentsOf(file), QByteArray(""));
  QVERIFY(QFile::exists(file));
}

void TestAliasWidget::anythingButYesKeepsTheEntry_data() {
  QTest::addColumn<bool>("withKey");
  QTest::addColumn<int>("answer");
  QTest::newRow("No") << false << static_cast<int>(QMessageBox::No);
  QTest::newRow("Escape") << true << static_cast<int>(Qt::Key_Escape);
  QTest::newRow("a hasty Enter") << true << static_cast<int>(Qt::Key_Return);
}

void TestAliasWidget::anythingButYesKeepsTheEntry() {
  QFETCH(bool, withKey);
  QFETCH(int, answer);
  open({{"a", {"1"}}});
  std::optional<BoxAnswer> box;
  if (withKey)
    box.emplace(static_cast<Qt::Key>(answer));
  else
    box.emplace(static_cast<QMessageBox::StandardButton>(answer));
  click(controls_->remove);
  QCOMPARE(box->said(), BoxAnswer::question("Delete Alias", "Really delete this alias?"));
  QCOMPARE(table_->size(), 1);
  QCOMPARE(controls_->list->count(), 1);
  QVERIFY(!QFile::exists(file));
}

void TestAliasWidget::deletingFromAnEmptyTableAsksAndDoesNothing() {
  open({});
  BoxAnswer answer(QMessageBox::Yes);
  click(controls_->remove);
  QCOMPARE(answer.said(), BoxAnswer::question("Delete Alias", "Really delete this alias?"));
  QCOMPARE(controls_->enabled(), browsingNothing);
  QVERIFY(!QFile::exists(file));
}

void TestAliasWidget::closeSavesNothing_data() {
  QTest::addColumn<bool>("edited");
  QTest::addColumn<bool>("withEscape");
  QTest::newRow("the button while browsing") << false << false;
  QTest::newRow("the button while editing") << true << false;
  QTest::newRow("Escape while browsing") << false << true;
  QTest::newRow("Escape while editing") << true << true;
}

void TestAliasWidget::closeSavesNothing() {
  QFETCH(bool, edited);
  QFETCH(bool, withEscape);
  open({{"k", {"kill"}}});
  if (edited) {
    click(controls_->edit);
    retype(controls_->commands, "changed");
  }
  if (withEscape)
    QTest::keyClick(editor_->windowHandle(), Qt::Key_Escape);
  else
    click(controls_->close);
  QVERIFY(editor_->isHidden());
  QCOMPARE(table_->entries(), QList<AliasEntry>({{"k", {"kill"}}}));
  QVERIFY(!QFile::exists(file));
  QCOMPARE(controls_->commands->toPlainText(),
           edited ? QStringLiteral("changed") : QStringLiteral("kill\n"));
}

void TestAliasWidget::enterInTheNameFieldPressesNothing() {
  open({{"k", {"kill"}}});
  click(controls_->edit);
  controls_->label->setFocus();
  for (const auto* button : editor_->findChildren<QPushButton*>())
    QVERIFY2(!button->isDefault(), "a button looks as if Enter pressed it");
  QTest::keyClick(editor_->windowHandle(), Qt::Key_Return);
  QTest::keyClick(editor_->windowHandle(), Qt::Key_Enter, Qt::KeypadModifier);
  QCOMPARE(controls_->enabled(), editing);
  QVERIFY(editor_->isVisible());
  QVERIFY(!QFile::exists(file));
}

void TestAliasWidget::enterPressesTheButtonThatHasTheFocus() {
  open({{"k", {"kill"}}});
  controls_->edit->setFocus();
  QTest::keyClick(editor_->windowHandle(), Qt::Key_Return);
  QCOMPARE(controls_->enabled(), editing);
}

void TestAliasWidget::aTableChangedMeanwhileIsNeverMisread() {
  open({{"a", {"1"}}, {"b", {"2"}}});
  controls_->list->setCurrentIndex(1);
  click(controls_->edit);
  retype(controls_->label, "renamed");
  table_->removeAt(1);
  click(controls_->save);
  QCOMPARE(table_->entries(), QList<AliasEntry>({{"a", {"1"}}}));
  editor_->cancelAlias();
  QCOMPARE(controls_->label->text(), QString());
  QCOMPARE(controls_->enabled(), browsingNothing);
  BoxAnswer answer(QMessageBox::Yes);
  click(controls_->remove);
  QCOMPARE(table_->size(), 1);
}

void TestAliasWidget::aFileThatCannotBeWrittenGoesUnsaid() {
  QVERIFY(QDir().mkdir(file));
  open({});
  click(controls_->add);
  QVERIFY(!QApplication::activeModalWidget() || QApplication::activeModalWidget() == editor_.get());
  QCOMPARE(controls_->items(), QStringList(placeholder));
  QVERIFY(QDir(file).exists());
}

void TestAliasWidget::tenThousandEntriesAreListedAtOneGo() {
  for (int number = 0; number < 10000; ++number)
    table_->append({QStringLiteral("alias %1").arg(number), {"look"}});
  open({});
  QSignalSpy selections(controls_->list, &QComboBox::currentIndexChanged);
  ProcessorClock timer;
  timer.start();
  editor_->showEditor();
  QVERIFY2(timer.elapsed() < 1000, "ten thousand entries take more than a second to list");
  QCOMPARE(selections.size(), 2);  // the old list gone, the first entry selected
  QCOMPARE(controls_->label->text(), QStringLiteral("alias 0"));

  controls_->list->setCurrentIndex(9999);
  BoxAnswer answer(QMessageBox::Yes);
  click(controls_->remove);
  QCOMPARE(table_->size(), 9999);
  QCOMPARE(controls_->list->currentIndex(), 9998);
  QCOMPARE(controls_->label->text(), QStringLiteral("alias 9998"));
}

void TestAliasWidget::disabledTextStaysLegibleInTheDark() {
  open({{"k", {"kill"}}});
  const QPalette before = QApplication::palette();
  QPalette dark = before;
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::Base, Qt::black);
  dark.setColor(QPalette::Disabled, QPalette::Text, QColor(40, 40, 40));
  const auto ink = [&] {
    return controls_->commands->palette().color(QPalette::Disabled, QPalette::Text);
  };
  QVERIFY(ink().lightness() < 128);
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  const int inTheDark = ink().lightness();
  QPalette colourful = before;
  colourful.setColor(QPalette::Text, QColor(200, 0, 100));
  colourful.setColor(QPalette::Base, QColor(0, 200, 100));
  QApplication::setPalette(colourful);
  QCoreApplication::processEvents();
  const QColor inColour = ink();
  QApplication::setPalette(before);
  QVERIFY(inTheDark > 128);
  // A third of the way from the ink to the paper, in each colour.
  QCOMPARE(inColour.name(), QStringLiteral("#824664"));  // 130, 70, 100
}

KELMORA_GUI_TEST_MAIN(TestAliasWidget)
#include "tst_aliaswidget.moc"
