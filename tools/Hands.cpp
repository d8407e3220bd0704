#include "Hands.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QPushButton>
#include <chrono>

#include "terminal/view/InputWidget.h"

namespace kelmora::tools {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 10s;
constexpr auto frames = 60ms;  // a few of the pane's and the bars'

void goOn() {
  QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
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

}  // namespace kelmora::tools
