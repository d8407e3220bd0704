#pragma once

#include <QEvent>
#include <QSplashScreen>

namespace kelmora::app {

/// The picture behind which the program starts. The toolkit's own one, as of
/// Qt 6.8, waits in its show event until it is on the screen. It cannot be before
/// that event is over, so each start would take a second longer.
class StartSplash final : public QSplashScreen {
 public:
  using QSplashScreen::QSplashScreen;

 protected:
  bool event(QEvent* event) override {
    return event->type() == QEvent::Show ? QWidget::event(event) : QSplashScreen::event(event);
  }
};

}  // namespace kelmora::app
