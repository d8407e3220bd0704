#include "Hands.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <chrono>

#include "terminal/view/InputWidget.h"

namespace kelmora::tools {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 10s;
constexpr auto frames = 60ms;  // a few of the pane's and the bars'

void goOn() {
  QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
  // Outside of any loop nothing else deletes what is to be deleted later.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

template <typename Window>
void whileOpen(QWidget* (*current)(), const std::function<void(Window&)>& act,
               const std::function<void()>& open) {
  QTimer::singleShot(100ms, qApp, [current, act] {
    if (auto* window = qobject_cast<Window*>(current())) {
      settle();
      act(*window);
      window->close();
    }
  });
  open();
}

}  // namespace

bool waitFor(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(patience);
  while (!condition() && !deadline.hasExpired())
    goOn();
  return condition();
}

void settle() {
  const QDeadlineTimer deadline(frames);
  while (!deadline.hasExpired())
    goOn();
}

void press(QWidget& widget, int key, const QString& text, Qt::KeyboardModifiers modifiers) {
  QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
  QApplication::sendEvent(&widget, &down);
  QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
  QApplication::sendEvent(&widget, &up);
}

void typeInto(InputWidget& bar, const QString& words) {
  bar.clear();
  for (const QChar letter : words)
    press(bar, 0, letter);
}

QPushButton* buttonOf(const QWidget& window, const QString& text) {
  for (QPushButton* button : window.findChildren<QPushButton*>())
    if (button->text() == text)
      return button;
  return nullptr;
}

QString wordsOf(const QWidget& window, const QString& text) {
  return QCoreApplication::translate(window.metaObject()->className(), text.toUtf8().constData());
}

void meanwhile(const std::function<void(QDialog&)>& act, const std::function<void()>& open) {
  whileOpen(&QApplication::activeModalWidget, act, open);
}

void meanwhileMenu(const std::function<void(QMenu&)>& act, const std::function<void()>& open) {
  whileOpen(&QApplication::activePopupWidget, act, open);
}

}  // namespace kelmora::tools
