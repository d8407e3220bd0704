#include "app/ApplicationFonts.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>

namespace kelmora::app {

namespace {

void substituteMissingCourier() {
  const QString standIn = QStringLiteral("Courier Prime");
  bool registered = false;
  for (const QString& family : {QStringLiteral("Courier"), QStringLiteral("Courier New")}) {
    if (QFontDatabase::hasFamily(family))
      continue;
    if (!registered) {
      for (const char* face : {"Regular", "Bold", "Italic", "BoldItalic"})
        QFontDatabase::addApplicationFont(
            QStringLiteral(":/fonts/CourierPrime-%1.ttf").arg(QLatin1String(face)));
      registered = true;
    }
    QFont::insertSubstitution(family, standIn);
  }
}

}  // namespace

void installApplicationFonts() {
  QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/UbuntuMono-R.ttf"));
  // The default font asks for the face by its full name; the font system
  // knows the family.
  QFont::insertSubstitution(QStringLiteral("Ubuntu Mono Regular"), QStringLiteral("Ubuntu Mono"));
  // The lowest weight the font system accepts: a quirk of this client.
  QApplication::setFont(QFont(QStringLiteral("Ubuntu Mono Regular"), 12, 1, false));
  substituteMissingCourier();
}

}  // namespace kelmora::app
