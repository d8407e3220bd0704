// Plays a short session by itself: kelmora-tour PORT PICTURE connects to a demo
// world on that port of this computer, types what a newcomer would, and keeps
// a picture of the window.

#include <QApplication>
#include <QTemporaryDir>
#include <QTextStream>

#include "Hands.h"
#include "app/ApplicationFonts.h"
#include "app/MainWidget.h"
#include "app/Profile.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora::tools;

namespace {

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
    typeInto(*bar, QString::fromLatin1(step.typed));
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
