#include "Reading.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QToolButton>

#include "Hands.h"
#include "Studio.h"
#include "terminal/reading/FindBar.h"
#include "terminal/reading/ReadBackView.h"
#include "terminal/view/OutputWidget.h"

namespace kelmora::tools {

namespace {

OutputWidget& paneOf(Studio& studio) {
  return *studio.window().findChild<OutputWidget*>();
}

terminal::FindBar& openFindBar(Studio& studio) {
  paneOf(studio).find();
  return *paneOf(studio).findChild<terminal::FindBar*>();
}

void find(Studio& studio, terminal::FindBar& bar, const QString& words, const QString& name) {
  bar.findChild<QLineEdit*>()->setText(words);
  studio.keep(name, studio.window());
}

void close(QWidget& tool) {
  QKeyEvent override(QEvent::ShortcutOverride, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(&tool, &override);
  press(tool, Qt::Key_Escape);
  settle();
}

}  // namespace

void keepFindBar(Studio& studio) {
  terminal::FindBar& bar = openFindBar(studio);
  studio.keep(QStringLiteral("find-empty.png"), studio.window());
  find(studio, bar, QStringLiteral("the"), QStringLiteral("find.png"));
  find(studio, bar, QStringLiteral("dragon"), QStringLiteral("find-nothing.png"));
  bar.findChildren<QToolButton*>().at(bar.findChildren<QToolButton*>().size() - 2)->click();
  find(studio, bar, QStringLiteral("(the"), QStringLiteral("find-expression.png"));
  close(*bar.findChild<QLineEdit*>());
}

void keepReadingBack(Studio& studio) {
  for (int time = 0; time < 4; ++time)
    studio.say(QStringLiteral("map"), QStringLiteral("hp: ["));
  OutputWidget& pane = paneOf(studio);
  pane.verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepSub);
  studio.say(QStringLiteral("look"), QStringLiteral("hp: ["));
  if (pane.findChild<terminal::ReadBackView*>() == nullptr)
    return studio.fail(QStringLiteral("the view of earlier text does not open"));
  studio.keep(QStringLiteral("read-back.png"), studio.window());
  find(studio, openFindBar(studio), QStringLiteral("the"), QStringLiteral("read-back-find.png"));
  close(*pane.findChild<terminal::FindBar*>()->findChild<QLineEdit*>());
  pane.verticalScrollBar()->triggerAction(QScrollBar::SliderToMaximum);
}

void keepMenu(Studio& studio) {
  QWidget& text = *paneOf(studio).viewport();
  const QPoint place(text.width() / 4, text.height() - 40);
  meanwhileMenu([&](QMenu& menu) { studio.keep(QStringLiteral("menu.png"), menu); },
                [&] {
                  QContextMenuEvent event(QContextMenuEvent::Mouse, place, text.mapToGlobal(place));
                  QApplication::sendEvent(&text, &event);
                });
}

}  // namespace kelmora::tools
