// Makes the pictures of the guide, of each dialog, or of a short film, offscreen and
// each time the same; scripts/pictures runs it.

#include <QApplication>
#include <QCommandLineParser>
#include <QFontDatabase>
#include <cstdio>

#include "Gallery.h"
#include "Studio.h"
#include "app/ApplicationFonts.h"
#include "app/Translations.h"

using namespace kelmora;
using namespace kelmora::tools;

namespace {

constexpr int wrongUse = 2;

struct Options {
  QString what;
  QString folder;
  bool dark = false;
  int fontPercent = 100;
  quint16 port = 5000;
  QString language;
};

struct Kind {
  const char* name;
  void (*take)(Studio& studio);
  QStringList (*names)();
};

constexpr Kind kinds[] = {
    {"guide", takeGuidePictures, guidePictures},
    {"dialogs", takeDialogPictures, dialogPictures},
    {"film", takeFilm, nullptr},
};

const Kind* kindOf(const QString& name) {
  for (const Kind& kind : kinds)
    if (name == QLatin1String(kind.name))
      return &kind;
  return nullptr;
}

int refuse(const QString& reason) {
  std::fprintf(stderr, "kelmora-pictures: %s\n", qPrintable(reason));
  return wrongUse;
}

void setDesktop(const Options& options) {
  QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication::setPalette(desktopPalette(options.dark));
  QApplication::setCursorFlashTime(0);
  QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false);
  app::installApplicationFonts();
  for (const char* face : {"Regular", "Bold", "Italic", "BoldItalic"})
    QFontDatabase::addApplicationFont(
        QStringLiteral(":/fonts/CourierPrime-%1.ttf").arg(QLatin1String(face)));
  QFont font = QApplication::font();
  font.setPointSizeF(font.pointSizeF() * options.fontPercent / 100);
  QApplication::setFont(font);
}

int take(const Kind& kind, const Options& options) {
  setDesktop(options);
  const app::Translations translations(options.language);
  Studio studio(options.folder, options.port);
  if (studio.isSound())
    kind.take(studio);
  const QStringList names = kind.names ? kind.names() : QStringList();
  const QSet<QString> promised(names.begin(), names.end());
  if (kind.names && studio.isSound() && studio.kept() != promised)
    studio.fail(QStringLiteral("what was made is not what is listed"));
  return studio.isSound() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QCommandLineParser parser;
  const QCommandLineOption list(QStringLiteral("list"), QStringLiteral("Print the names."));
  const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("A dark desktop."));
  const QCommandLineOption percent(QStringLiteral("font-percent"),
                                   QStringLiteral("The size of the desktop's font."),
                                   QStringLiteral("N"), QStringLiteral("100"));
  const QCommandLineOption port(QStringLiteral("port"),
                                QStringLiteral("Where the demo world listens."),
                                QStringLiteral("N"), QStringLiteral("5000"));
  const QCommandLineOption language(
      QStringLiteral("language"), QStringLiteral("What the client speaks."), QStringLiteral("de"));
  parser.addOptions({list, dark, percent, port, language});
  parser.addPositionalArgument(QStringLiteral("what"), QStringLiteral("guide, dialogs or film"));
  parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("where they are put"));
  parser.addHelpOption();
  parser.process(application);
  const Kind* kind = kindOf(parser.positionalArguments().value(0));
  if (kind == nullptr)
    return refuse(QStringLiteral("say what to make: guide, dialogs or film"));
  if (parser.isSet(list)) {
    if (kind->names)
      std::puts(qPrintable(kind->names().join(u'\n')));
    return 0;
  }
  const Options options{.what = parser.positionalArguments().value(0),
                        .folder = parser.positionalArguments().value(1),
                        .dark = parser.isSet(dark),
                        .fontPercent = parser.value(percent).toInt(),
                        .port = parser.value(port).toUShort(),
                        .language = parser.value(language)};
  if (options.folder.isEmpty() || options.fontPercent < 50 || options.fontPercent > 400)
    return refuse(QStringLiteral("a folder is needed, and a font of 50 to 400 per cent"));
  return take(*kind, options);
}
