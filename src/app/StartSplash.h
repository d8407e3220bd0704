#pragma once

#include <QEvent>
#include <QSplashScreen>

namespace kelmora::app {

/// The picture behind which the program starts. Since Qt 6.8 the toolkit's own
/// splash screen waits in its show event until it is on the screen. But it gets
/// there only after that event, so each start would take a second longer. Here the
/// event is handled as by any other widget.
class StartSplash final : public QSplashScreen {
 public:
  using QSplashScreen::QSplashScreen;

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::Show)
      return QWidget::event(event);  // NOLINT(bugprone-parent-virtual-call)
    return QSplashScreen::event(event);
  }
};

}  // namespace kelmora::app
