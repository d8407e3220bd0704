#include <QApplication>
#include <QLocale>
#include <QPixmap>
#include <cstdio>
#include <cstdlib>

#include "app/ApplicationFonts.h"
#include "app/CommandLine.h"
#include "app/MainWidget.h"
#include "app/PlayersFolder.h"
#include "app/Profile.h"
#include "app/StartSplash.h"
#include "app/Translations.h"

using namespace kelmora;
using namespace kelmora::app;

int main(int argc, char** argv) {
  // Before the application object, which needs a display.
  QStringList arguments;
  for (int i = 1; i < argc; ++i)
    arguments << QString::fromLocal8Bit(argv[i]);
  const QString language = languageFor(QLocale::system().uiLanguages());
  if (auto answer = answerTo(arguments)) {
    if (!language.isEmpty()) {
      // Texts are translated only where there is an application object.
      const QCoreApplication speaker(argc, argv);
      const Translations translations(language);
      answer = answerTo(arguments);
    }
    std::fputs(qPrintable(answer->text), answer->exitCode == 0 ? stdout : stderr);
    return answer->exitCode;
  }

  const QApplication application(argc, argv);
  const Translations translations(language);
  if (!checkPlayersFolder())
    return EXIT_FAILURE;

  StartSplash splash(QPixmap(QStringLiteral(":/icons/splash.png")));
  splash.show();
  splash.showMessage(QStringLiteral("Kelmora Client v" KELMORA_VERSION), Qt::AlignLeft, Qt::black);
  installApplicationFonts();
  QApplication::processEvents();

  Profile profile;
  MainWidget window(profile);
  window.show();
  splash.finish(&window);
  return QApplication::exec();
}
