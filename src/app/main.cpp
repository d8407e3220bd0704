#include <QApplication>
#include <QPixmap>

#include "app/ApplicationFonts.h"
#include "app/MainWidget.h"
#include "app/StartSplash.h"

using namespace kelmora;
using namespace kelmora::app;

int main(int argc, char** argv) {
  const QApplication application(argc, argv);

  StartSplash splash(QPixmap(QStringLiteral(":/icons/splash.png")));
  splash.show();
  splash.showMessage(QStringLiteral("Kelmora Client v3.9b"), Qt::AlignLeft, Qt::black);
  installApplicationFonts();
  QApplication::processEvents();

  MainWidget window;
  window.show();
  splash.finish(&window);
  return QApplication::exec();
}
