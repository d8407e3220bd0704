#include "Illustrator.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QWheelEvent>
#include <array>

#include "Dialogs.h"
#include "GuidePage.h"
#include "Hands.h"
#include "Studio.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

namespace kelmora::tools {

namespace {

using Kind = GuideStep::Kind;

/// The dialogs of which nothing but a picture is wanted.
struct Shown {
  const char* picture;
  void (*keep)(Studio& studio);
};
constexpr std::array dialogsShown{
    Shown{"general-settings.png", keepGeneralSettings},
    Shown{"interface-settings.png", keepInterfaceSettings},
    Shown{"proxy-settings.png", keepProxySettings},
    Shown{"help.png", keepHelp},
};

Entry entryOf(const GuideStep& step) {
  return {step.subject, step.lines.join(u'\n')};
}

}  // namespace

void Illustrator::follow(const GuidePage& page) {
  for (const QString& fault : page.faults())
    studio_.fail(fault);
  for (const GuideSection& section : page.sections())
    for (const GuideStep& step : section.steps)
      if (studio_.isSound())
        take(step);
}

QStringList Illustrator::pictures(const GuidePage& page) {
  QStringList names;
  for (const GuideSection& section : page.sections())
    for (const GuideStep& step : section.steps)
      if (step.kind == Kind::Picture)
        names << step.subject;
  return names;
}

void Illustrator::take(const GuideStep& step) {
  if (step.kind == Kind::Picture)
    return keepPicture(step.subject);
  if (step.kind == Kind::See) {
    for (const QString& line : step.lines)
      studio_.awaitWords(line, before_);
    return;
  }
  before_ = studio_.text().size();
  switch (step.kind) {
    case Kind::Type:
      for (const QString& line : step.lines)
        studio_.say(line, QStringLiteral("hp: ["));
      break;
    case Kind::Alias:
      return keepAliases(studio_, entryOf(step));
    case Kind::Trigger:
      return keepTriggers(studio_, entryOf(step));
    case Kind::Macro:
      return keepMacros(studio_, entryOf(step).commands);
    case Kind::Press:
      return press(step.subject);
    case Kind::Wheel:
      return turnWheelUp();
    case Kind::Seek:
      return seek(step);
    case Kind::Menu:
      return makeTrigger(step);
    case Kind::Divided:
    case Kind::Whole:
      break;
    default:
      studio_.fail(QStringLiteral("line %1: no picture needs such a step").arg(step.place));
  }
}

void Illustrator::keepPicture(const QString& name) {
  for (const Shown& dialog : dialogsShown)
    if (name == QLatin1String(dialog.picture))
      return dialog.keep(studio_);
  // What an editor or a menu shows was kept while it was open, or is about to be.
  for (const char* kept : {"aliases.png", "triggers.png", "macros.png", "key.png", "menu.png"})
    if (name == QLatin1String(kept))
      return;
  studio_.keep(name, studio_.window());
}

void Illustrator::press(const QString& key) {
  const QKeySequence keys(key);
  for (QAction* action : studio_.window().findChildren<QAction*>())
    if (action->isEnabled() && action->shortcut() == keys)
      return action->trigger();
  QWidget* const focus = studio_.window().focusWidget();
  // Events that are sent by hand go past the shortcuts.
  if (focus == &studio_.bar())
    for (auto* shortcut : studio_.window().findChildren<QShortcut*>())
      if (shortcut->isEnabled() && shortcut->key() == keys)
        return (void)QMetaObject::invokeMethod(shortcut, "activated");
  kelmora::tools::press(*focus, keys[0].key(), {}, keys[0].keyboardModifiers());
}

void Illustrator::seek(const GuideStep& step) {
  press(step.subject);
  auto* const field = qobject_cast<QLineEdit*>(studio_.window().focusWidget());
  if (field == nullptr || field == &studio_.bar())
    return studio_.fail(QStringLiteral("nothing opens to find words in"));
  field->setText(step.detail);
}

void Illustrator::turnWheelUp() {
  QWidget& pane = *studio_.window().findChild<OutputWidget*>()->viewport();
  constexpr int steps = 4;
  constexpr int aStep = 120;  // eighths of a degree
  const QPointF place = pane.rect().center();
  QWheelEvent wheel(place, pane.mapToGlobal(place), {}, {0, steps * aStep}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&pane, &wheel);
  settle();
}

void Illustrator::makeTrigger(const GuideStep& step) {
  auto& pane = *studio_.window().findChild<OutputWidget*>();
  pane.moveCursor(QTextCursor::End);
  const QTextCursor found =
      pane.document()->find(step.subject, pane.textCursor(), QTextDocument::FindBackward);
  if (found.isNull())
    return studio_.fail(QStringLiteral("no line to click on: ") + step.subject);
  const QPoint place = pane.cursorRect(found).center();
  const auto choose = [&](QMenu& menu) {
    for (QAction* action : menu.actions()) {
      if (action->text().remove(u'&') != step.detail)
        continue;
      menu.setActiveAction(action);
      studio_.keep(QStringLiteral("menu.png"), studio_.window(), &menu);
      return action->trigger();
    }
    studio_.fail(QStringLiteral("the menu does not offer: ") + step.detail);
  };
  const auto open = [&] {
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, pane.viewport()->mapToGlobal(place));
    QApplication::sendEvent(pane.viewport(), &event);
  };
  studio_.withDialog(
      QStringLiteral("Triggers"), [&] { meanwhileMenu(choose, open); },
      [&](QDialog& dialog) {
        dialog.findChild<QPlainTextEdit*>()->setPlainText(step.lines.join(u'\n'));
        buttonOf(dialog, QStringLiteral("Save trigger"))->click();
      });
}

}  // namespace kelmora::tools
