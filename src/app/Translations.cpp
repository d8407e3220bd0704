#include "app/Translations.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <algorithm>

namespace kelmora::app {

namespace {

constexpr QLatin1StringView folder(":/translations");

QString nameOf(const QString& language) {
  return QStringLiteral("kelmora_%1.qm").arg(language);
}

}  // namespace

QString languageFor(const QStringList& wanted) {
  for (const QString& tag : wanted) {
    QString language = tag;
    language.replace(u'-', u'_');
    const QString plain = language.section(u'_', 0, 0);
    if (plain == QLatin1String("en") || plain == QLatin1String("C"))
      return {};
    // From "de_AT" to "de": one for the country comes first.
    while (!language.isEmpty()) {
      if (QFile::exists(folder + u'/' + nameOf(language)))
        return language;
      language.truncate(std::max(language.lastIndexOf(u'_'), qsizetype{0}));
    }
  }
  return {};
}

Translations::Translations(const QString& language) {
  if (language.isEmpty())
    return;
  // The words on the toolkit's own buttons and dialogs, where the system has them.
  if (toolkit_.load(QStringLiteral("qtbase_") + language,
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(&toolkit_);
  if (client_.load(nameOf(language), folder))
    QCoreApplication::installTranslator(&client_);
}

}  // namespace kelmora::app
