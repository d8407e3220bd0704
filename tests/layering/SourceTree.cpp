#include "layering/SourceTree.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

namespace {

QString withoutCommentsAndQuotes(const QString& text) {
  // In this order at each place: a comment, a raw string, a string, a number
  // (whose "'" divides digits), a character, a preprocessor line.
  static const QRegularExpression skipped(
      QStringLiteral(R"re(//[^\n]*|/\*.*?\*/)re"
                     R"re(|R"(?<tag>[^(]*)\(.*?\)\k<tag>")re"
                     R"re(|"(?:\\.|[^"\\\n])*")re"
                     R"re(|(?<number>\b\d[\w']*))re"
                     R"re(|'(?:\\.|[^'\\\n])+')re"
                     R"re(|^[ \t]*\#(?:\\\n|[^\n])*)re"),
      QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
  QString code;
  qsizetype from = 0;
  for (auto matches = skipped.globalMatch(text); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    code += QStringView(text).sliced(from, match.capturedStart() - from);
    code += match.capturedView(u"number");
    code += u' ';
    from = match.capturedEnd();
  }
  code += QStringView(text).sliced(from);
  return code;
}

}  // namespace

SourceFile sourceFile(const QString& text) {
  static const QRegularExpression include(
      QStringLiteral(R"re(^[ \t]*#[ \t]*include[ \t]+"([^"]+)")re"),
      QRegularExpression::MultilineOption);
  SourceFile file;
  for (auto matches = include.globalMatch(text); matches.hasNext();)
    file.includes << matches.next().captured(1);
  file.code = withoutCommentsAndQuotes(text);
  return file;
}

SourceTree readSources(const QString& folder, const QString& prefix) {
  SourceTree tree;
  QDirIterator paths(folder, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                     QDirIterator::Subdirectories);
  while (paths.hasNext()) {
    QFile file(paths.next());
    if (!file.open(QIODevice::ReadOnly))
      qFatal("cannot read %s", qPrintable(file.fileName()));
    tree.insert(prefix + QDir(folder).relativeFilePath(file.fileName()),
                sourceFile(QString::fromUtf8(file.readAll())));
  }
  return tree;
}

SourceTree projectSources() {
  const QString root = QStringLiteral(KELMORA_SOURCES "/");
  SourceTree tree = readSources(root + QStringLiteral("src"));
  tree.insert(readSources(root + QStringLiteral("demo"), QStringLiteral("demo/")));
  return tree;
}
