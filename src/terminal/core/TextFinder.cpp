#include "terminal/core/TextFinder.h"

namespace kelmora::terminal {

namespace {

/// In place of each half of a surrogate pair without its other half.
void mendSurrogates(QString& text) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    const bool isPair =
        text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
    if (isPair)
      ++i;
    else if (text[i].isSurrogate())
      text[i] = QChar::ReplacementCharacter;
  }
}

}  // namespace

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
  // Nothing would be found in a text with half a surrogate pair.
  if (!text.isValidUtf16())
    mendSurrogates(text);
  for (auto matches = expression_.globalMatch(text); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    if (match.capturedLength() > 0)
      hits.push_back({.start = match.capturedStart(), .length = match.capturedLength()});
  }
  return hits;
}

}  // namespace kelmora::terminal
