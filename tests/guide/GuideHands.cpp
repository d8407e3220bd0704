#include "GuideHands.h"

#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QKeySequence>
#include <QMenu>
#include <QTimer>
#include <QWheelEvent>
#include <functional>

#include "automation/EditorControls.h"
#include "automation/editors/KeyPressInput.h"
#include "automation/editors/KeyPressWidget.h"
#include "support/DialogAnswers.h"

using namespace kelmora::tools;

namespace {

QKeyCombination keyOf(const QString& name) {
  return QKeySequence(name)[0];
}

void pressIn(QWidget* target, const QString& name) {
  const QKeyCombination keys = keyOf(name);
  QTest::keyClick(target, keys.key(), keys.keyboardModifiers());
}

QAction* actionOf(const PlayWindow& window, const QString& shortcut) {
  for (QAction* action : window.actions)
    if (action->isEnabled() && action->shortcut() == QKeySequence(shortcut))
      return action;
  return nullptr;
}

/// Opens an editor by its key, lets it be used and closes it.
void inEditor(const PlayWindow& window, const QString& word,
              const std::function<void(const EditorControls&)>& use) {
  const bool isAlias = word == QLatin1String("alias");
  const QString many = isAlias ? QStringLiteral("aliases") : word + u's';
  const QString title = many.at(0).toUpper() + many.sliced(1);
  QDialog* dialog = window.dialogTitled(title);
  QVERIFY(dialog);
  pressKey(window, isAlias ? QStringLiteral("Ctrl+L") : QStringLiteral("Ctrl+") + title.at(0));
  QVERIFY(QTest::qWaitForWindowActive(dialog));
  const EditorControls controls(*dialog, word);
  QVERIFY(controls.complete());
  use(controls);
  click(controls.close);
  QVERIFY(QTest::qWaitForWindowActive(window.window.get()));
}

}  // namespace

void typeLine(const PlayWindow& window, const QString& line) {
  InputWidget* const bar = window.bar;
  QTest::keyClick(bar, Qt::Key_Escape);
  for (const QChar letter : line) {
    // The toolkit's own way of typing does not know the others.
    if (letter.unicode() < 128)
      QTest::keyClick(bar, letter.toLatin1());
    else
      QTest::sendKeyEvent(QTest::Click, bar, Qt::Key_unknown, QString(letter), Qt::NoModifier);
  }
  QTest::keyClick(bar, Qt::Key_Return);
}

void addEntry(const PlayWindow& window, const QString& word, const GuideStep& step) {
  inEditor(window, word, [&](const EditorControls& controls) {
    QList<ExpectedDialog> questions;
    if (word == QLatin1String("macro"))
      questions << ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& asked) {
        pressIn(asked.findChild<KeyPressInput*>(), step.subject);
        click(buttonOf(asked, QStringLiteral("Okay")));
      });
    const DialogAnswers answers(questions);
    click(controls.add);
    click(controls.edit);
    if (controls.label)
      retype(controls.label, step.subject);
    retype(controls.commands, step.lines.join(u'\n'));
    click(controls.save);
    // What the dialog shows now is what the entry holds.
    QCOMPARE(controls.commands->toPlainText().trimmed(), step.lines.join(u'\n'));
  });
}

void editAlias(const PlayWindow& window, const GuideStep& step) {
  inEditor(window, QStringLiteral("alias"), [&](const EditorControls& controls) {
    controls.list->setCurrentText(step.subject);
    QCOMPARE(controls.list->currentText(), step.subject);
    click(controls.edit);
    if (!step.detail.isEmpty())
      pressIn(controls.commands, step.detail);
    click(controls.save);
  });
}

void pressKey(const PlayWindow& window, const QString& name) {
  // A shortcut that is switched off leaves its key to whatever has the keyboard.
  if (QAction* action = actionOf(window, name))
    action->trigger();
  else
    pressIn(window.window->focusWidget(), name);
}

void nameFile(const PlayWindow& window, const GuideStep& step) {
  const DialogAnswers answers{ExpectedDialog::file(step.detail)};
  pressKey(window, step.subject);
}

void switchOption(const PlayWindow& window, const QString& label) {
  pressKey(window, QStringLiteral("Ctrl+G"));
  QDialog* dialog = window.dialogTitled(QStringLiteral("General Settings"));
  QVERIFY(dialog && QTest::qWaitForWindowActive(dialog));
  for (QCheckBox* box : dialog->findChildren<QCheckBox*>()) {
    if (box->text() == label) {
      const bool before = box->isChecked();
      box->click();
      QCOMPARE(box->isChecked(), !before);
      click(buttonOf(*dialog, QStringLiteral("Apply")));
      return;
    }
  }
  QFAIL(qPrintable(QStringLiteral("no box is called ") + label));
}

void turnWheelUp(const PlayWindow& window) {
  QWidget* const pane = window.pane->viewport();
  constexpr int steps = 4;
  constexpr int aStep = 120;  // eighths of a degree
  const QPointF place = pane->rect().center();
  QWheelEvent wheel(place, pane->mapToGlobal(place), {}, {0, steps * aStep}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(pane, &wheel);
}

void findWords(const PlayWindow& window, const GuideStep& step) {
  pressKey(window, step.subject);
  QWidget* const field = window.window->focusWidget();
  QVERIFY(field != window.bar);
  QTest::keyClicks(field, step.detail);
}

void makeTrigger(const PlayWindow& window, const GuideStep& step) {
  window.pane->moveCursor(QTextCursor::End);
  QTextCursor found = window.pane->document()->find(step.subject, window.pane->textCursor(),
                                                    QTextDocument::FindBackward);
  QVERIFY(!found.isNull());
  const QPoint place = window.pane->cursorRect(found).center() - QPoint(3, 0);
  QTimer::singleShot(0, window.pane, [&] {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu);
    for (QAction* action : menu->actions())
      if (action->text().remove(u'&') == step.detail)
        action->trigger();
    menu->close();
  });
  QWidget* const pane = window.pane->viewport();
  QContextMenuEvent event(QContextMenuEvent::Mouse, place, pane->mapToGlobal(place));
  QCoreApplication::sendEvent(pane, &event);
  QDialog* const dialog = window.dialogTitled(QStringLiteral("Triggers"));
  QVERIFY(dialog && QTest::qWaitForWindowActive(dialog));
  const EditorControls controls(*dialog, QStringLiteral("trigger"));
  QVERIFY(controls.complete());
  QCOMPARE(controls.label->text(), step.subject);
  retype(controls.commands, step.lines.join(u'\n'));
  click(controls.save);
  click(controls.close);
  QVERIFY(QTest::qWaitForWindowActive(window.window.get()));
}
