#include "terminal/core/TextFinder.h"

namespace kelmora::terminal {

TextFinder::TextFinder(const QString& words, Options options) {
  if (words.isEmpty())
    return;
  const QString plain = options.expression ? words : QRegularExpression::escape(words);
  // By itself: what is put around it could pair with a bracket too many.
  if (!QRegularExpression(plain).isValid())
    return;
  QRegularExpression::PatternOptions flags =
      QRegularExpression::UseUnicodePropertiesOption | QRegularExpression::MultilineOption;
  if (!options.matchCase)
    flags |= QRegularExpression::CaseInsensitiveOption;
  const QString pattern =
      options.wholeWords ? QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(plain) : plain;
  // Some expressions try every way to cut a text into pieces. A player who types one
  // is not to wait for years.
  expression_ = QRegularExpression(
      QStringLiteral("(*LIMIT_MATCH=100000)(*LIMIT_DEPTH=2000)") + pattern, flags);
  isUsable_ = expression_.isValid();
}

std::vector<TextFinder::Hit> TextFinder::hitsIn(const QString& paragraph) const {
  std::vector<Hit> hits;
  if (!isUsable_)
    return hits;
  QString text = paragraph;
  text.replace(QChar::LineSeparator, u'\n').replace(QChar::Nbsp, u' ');
  for (auto matches = expression_.globalMatch(text); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    if (match.capturedLength() > 0)
      hits.push_back({.start = match.capturedStart(), .length = match.capturedLength()});
  }
  return hits;
}

}  // namespace kelmora::terminal
