// Plays a short session by itself: kelmora-tour PORT PICTURE connects to a demo
// world on that port of this computer, types what a newcomer would, and keeps
// a picture of the window.

#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTextStream>
#include <functional>

#include "app/ApplicationFonts.h"
#include "app/MainWidget.h"
#include "app/Profile.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

namespace {

constexpr int patience = 10000;  // milliseconds to wait for an answer

bool waitFor(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(patience);
  while (!condition() && !deadline.hasExpired())
    QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
  return condition();
}

void press(QWidget& widget, int key, const QString& text = {},
           Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
  QApplication::sendEvent(&widget, &down);
  QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
  QApplication::sendEvent(&widget, &up);
}

struct Step {
  const char* typed;
  const char* answer;  ///< what the pane shows once the step is through
};

constexpr Step steps[] = {
    {"Robin", "hp: ["},
    {"look", "hp: ["},
    {"colours", "hp: ["},
    {"link", "kelmora.example"},
    {"map;say Hello, world!", "hp: ["},
};

bool play(MainWidget& window) {
  auto* pane = window.findChild<OutputWidget*>();
  auto* bar = window.findChild<InputWidget*>();
  window.connectToServer();
  if (!waitFor([&] { return pane->toPlainText().contains(QStringLiteral("name")); }))
    return false;
  for (const Step& step : steps) {
    const QString before = pane->toPlainText();
    bar->clear();
    for (const QChar letter : QString::fromLatin1(step.typed))
      press(*bar, 0, letter);
    press(*bar, Qt::Key_Return);
    const auto answered = [&] {
      return pane->toPlainText().mid(before.size()).contains(QLatin1String(step.answer));
    };
    if (!waitFor(answered))
      return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QTextStream console(stdout);
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() != 3) {
    console << "usage: kelmora-tour PORT PICTURE\n";
    return 2;
  }
  kelmora::app::installApplicationFonts();
  // A session of its own, whatever the player has stored.
  const QTemporaryDir folder;
  kelmora::app::Profile profile({.iniFile = folder.filePath(QStringLiteral("store.ini"))});
  MainWidget window(profile);
  profile.settings.hostName = QStringLiteral("127.0.0.1");
  profile.settings.port = arguments.at(1).toInt();
  window.show();
  const bool played = play(window);
  QApplication::processEvents();
  const bool kept = window.grab().save(arguments.at(2));
  if (!played)
    console << "The demo world did not answer as expected.\n";
  if (!kept)
    console << "The picture could not be written to " << arguments.at(2) << ".\n";
  return played && kept ? 0 : 1;
}
