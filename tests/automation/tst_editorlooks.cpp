// How all three editors look, and how keys move around in them.

#include <QApplication>
#include <QFontMetricsF>
#include <QGridLayout>

#include "AnyEditor.h"
#include "support/ScratchMain.h"

class TestEditorLooks : public EditorTest {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase_data() { addEditors({"macro", "trigger", "alias"}); }
  void init() { makeEditor(); }
  void cleanup() { dropEditor(); }

  void declaresItsSevenSlotsInOrder();
  void saysItsWords();
  void looksAsLaidOut();
  void aLargeFontOfTheDesktopCutsNoButton();
  void theTabKeyFollowsTheReadingOrder();
  void showingReturnsAtOnceAndBlocksTheOtherWindows();
  void enterPressesTheButtonThatHasTheFocus();
  void noButtonIsADefaultButton();
  void disabledTextStaysLegibleInTheDark();
};

void TestEditorLooks::declaresItsSevenSlotsInOrder() {
  const QMetaObject& type = *editor().dialog().metaObject();
  QCOMPARE(methodsOf(type),
           QStringList({"selectionChanged(int)", words().slot("add"), words().slot("delete"),
                        words().slot("edit"), words().slot("save"), words().slot("cancel"),
                        "closeDialog()"}));
  QCOMPARE(type.className(), EditorWords::capital(words().one) + "Widget");
  QCOMPARE(type.superClass()->className(), "QDialog");
}

void TestEditorLooks::saysItsWords() {
  const EditorControls& c = controls();
  const QString title = EditorWords::capital(words().many);
  QCOMPARE(editor().dialog().windowTitle(), title);
  QVERIFY(!editor().dialog().windowIcon().isNull());
  QCOMPARE(editor().dialog().windowIcon().pixmap(32).toImage(),
           QIcon(":/icons/" + words().many + ".png").pixmap(32).toImage());
  QCOMPARE(c.list->accessibleName(), title);
  QCOMPARE(c.commands->accessibleName(), QStringLiteral("Commands"));
  QVERIFY(!c.commands->toolTip().isEmpty());
  QCOMPARE(c.label != nullptr, !words().labelName.isEmpty());
  if (c.label) {
    QCOMPARE(c.label->accessibleName(), words().labelName);
    QVERIFY(!c.label->toolTip().isEmpty());
  }
}

void TestEditorLooks::looksAsLaidOut() {
  editor().open({{"A", {"kill"}}});
  QDialog& dialog = editor().dialog();
  QVERIFY(dialog.isModal());
  const EditorControls& c = controls();
  QCOMPARE(c.commands->lineWrapMode(), QPlainTextEdit::NoWrap);
  // The letters are measured, since not every font of fixed pitch says that it is one.
  const QFontMetricsF letters(c.commands->font());
  QCOMPARE(letters.horizontalAdvance("iiii"), letters.horizontalAdvance("MMMM"));

  const auto* grid = qobject_cast<QGridLayout*>(dialog.layout());
  QVERIFY(grid);
  QCOMPARE(grid->columnCount(), 1);
  QCOMPARE(grid->rowCount(), c.label ? 5 : 4);
  const auto middleOf = [](const QWidget* widget) { return widget->geometry().center().y(); };
  if (c.label) {
    QVERIFY(c.commands->geometry().bottom() < c.label->y());
    QVERIFY(c.label->geometry().bottom() < c.edit->y());
  }
  QVERIFY(c.commands->geometry().bottom() < c.edit->y());
  QVERIFY(c.edit->geometry().bottom() < c.list->y());
  QVERIFY(c.list->geometry().bottom() < c.close->y());
  QVERIFY(middleOf(c.edit) == middleOf(c.save) && middleOf(c.save) == middleOf(c.cancel));
  QVERIFY(qAbs(middleOf(c.list) - middleOf(c.add)) <= 1 && middleOf(c.add) == middleOf(c.remove));
  QVERIFY(c.edit->x() < c.save->x() && c.save->x() < c.cancel->x());
  QVERIFY(c.list->x() < c.add->x() && c.add->x() < c.remove->x());
  // The list has half of its row, each button a quarter.
  dialog.resize(1600, 600);
  QTRY_VERIFY(c.list->width() > 600);
  QVERIFY(qAbs(c.add->width() - c.remove->width()) <= 1);
  QVERIFY(qAbs(c.list->width() - 2 * c.add->width()) <= 3);
}

void TestEditorLooks::aLargeFontOfTheDesktopCutsNoButton() {
  QDialog& dialog = editor().dialog();
  QFont font = dialog.font();
  font.setPointSizeF(24);
  dialog.setFont(font);
  editor().open({{"A", {"kill"}}});
  const EditorControls& c = controls();
  for (const QPushButton* button : {c.edit, c.save, c.cancel, c.add, c.remove, c.close})
    QVERIFY2(button->width() >= button->sizeHint().width(), qPrintable(button->text()));
  // With the usual font again, the usual size is enough.
  dialog.close();
  font.setPointSizeF(9);
  dialog.setFont(font);
  QApplication::processEvents();
  editor().dialog().showEditor();
  QCOMPARE(dialog.minimumSize(), QSize(420, 360));
}

void TestEditorLooks::theTabKeyFollowsTheReadingOrder() {
  editor().open({{"A", {"kill"}}});
  // Presses Tab so often and tells which controls have the focus on the way.
  const auto walk = [this](qsizetype count) {
    QStringList visited{controls().focused()};
    for (qsizetype step = 0; step < count; ++step) {
      QTest::keyClick(editor().dialog().windowHandle(), Qt::Key_Tab);
      visited << controls().focused();
    }
    return visited.join(u' ');
  };
  QCOMPARE(walk(5), QStringLiteral("list add delete close edit list"));
  click(controls().edit);
  QCOMPARE(walk(editing().count(u' ') + 1), editing() + " commands");
}

void TestEditorLooks::showingReturnsAtOnceAndBlocksTheOtherWindows() {
  editor().open({});
  QVERIFY(editor().dialog().isVisible());
  QCOMPARE(QApplication::activeModalWidget(), &editor().dialog());
}

void TestEditorLooks::enterPressesTheButtonThatHasTheFocus() {
  editor().open({{"A", {"kill"}}});
  controls().edit->setFocus();
  QTest::keyClick(editor().dialog().windowHandle(), Qt::Key_Return);
  QCOMPARE(controls().enabled(), editing());
}

void TestEditorLooks::noButtonIsADefaultButton() {
  editor().open({{"A", {"kill"}}});
  click(controls().edit);
  for (const auto* button : editor().dialog().findChildren<QPushButton*>())
    QVERIFY2(!button->isDefault(), "a button looks as if Enter pressed it");
}

void TestEditorLooks::disabledTextStaysLegibleInTheDark() {
  editor().open({{"A", {"kill"}}});
  const QPalette before = QApplication::palette();
  QPalette dark = before;
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::Base, Qt::black);
  dark.setColor(QPalette::Disabled, QPalette::Text, QColor(40, 40, 40));
  const auto ink = [&] {
    return controls().commands->palette().color(QPalette::Disabled, QPalette::Text);
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
  // A third of the way from the text's colour to the background's.
  QCOMPARE(inColour.name(), QStringLiteral("#824664"));  // 130, 70, 100
}

KELMORA_GUI_TEST_MAIN(TestEditorLooks)
#include "tst_editorlooks.moc"
