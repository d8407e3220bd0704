#include "TranslationFile.h"

#include <QDir>
#include <QFile>
#include <QKeySequence>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

QStringList found(const char* pattern, const QString& text) {
  static QHash<const char*, QRegularExpression> compiled;
  if (!compiled.contains(pattern))
    compiled[pattern] = QRegularExpression(QString::fromLatin1(pattern));
  QStringList all;
  for (auto match = compiled[pattern].globalMatch(text); match.hasNext();)
    all << match.next().captured();
  all.sort();
  return all;
}

/// What a translation repeats to the letter, in any order.
struct Kept {
  const char* pattern;
  const char* words;
};

constexpr Kept kept[]{
    {"%L?[0-9n]", "placeholders"},
    {"\\n", "line breaks"},
    {"^\\s+|\\s+$", "blanks at the ends"},
    {"&(?=[^ ])", "mnemonics"},
    {"\\(\\*[^)]*\\)", "patterns of files"},
    {"\\w+\\.txt", "names of files"},
    {"(?<![\\w])--?\\w[\\w-]*", "options"},
    {"(?<![\\w/<])/\\w+", "commands"},
    {"\\{\\*\\}", "catches"},
    {"Kelmora|kelmora", "the program's name"},
    {"[:!?]\\s*$", "the sign at the end"},
    {"\\.(?=\\s*$)", "the full stop at the end"},
    {"\\.\\.\\.|\\x{2026}", "ellipses"},
    {"^<|>$", "angle brackets"},
    {"(?<=\\+).(?=\\)$)", "the key behind the text"},
};

}  // namespace

QStringList translationFiles() {
  QStringList paths;
  const QDir folder(QStringLiteral(KELMORA_TRANSLATIONS));
  for (const QString& name : folder.entryList({QStringLiteral("*.ts")}, QDir::Files))
    paths << folder.filePath(name);
  return paths;
}

QList<Translated> textsIn(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    return {};
  QXmlStreamReader xml(&file);
  QList<Translated> texts;
  QString context;
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement)
      continue;
    if (xml.name() == QLatin1String("name")) {
      context = xml.readElementText();
    } else if (xml.name() == QLatin1String("source")) {
      texts << Translated{context, xml.readElementText(), {}, {}};
    } else if (xml.name() == QLatin1String("translation")) {
      texts.last().type = xml.attributes().value(QLatin1String("type")).toString();
      texts.last().translation = xml.readElementText();
    }
  }
  return xml.hasError() ? QList<Translated>() : texts;
}

QStringList differencesOfForm(const QString& source, const QString& translation) {
  QStringList differences;
  for (const Kept& row : kept)
    if (found(row.pattern, source) != found(row.pattern, translation))
      differences << QString::fromLatin1(row.words);
  static const QRegularExpression quotes(QStringLiteral("[\"'\u2018-\u201f\u00ab\u00bb]"));
  if (translation.count(quotes) != 0 && source.count(quotes) == 0)
    differences << QStringLiteral("quotation marks");
  // A key is taken as it stands, whatever the toolkit calls it on its menus.
  if (source.startsWith(QLatin1String("Ctrl+")) &&
      QKeySequence(source) != QKeySequence(translation))
    differences << QStringLiteral("the key");
  // The name of a new entry goes into a file in this encoding.
  if (source.startsWith(QLatin1String("<Enter ")) &&
      QString::fromLatin1(translation.toLatin1()) != translation)
    differences << QStringLiteral("characters outside Latin-1");
  return differences;
}
