#include "terminal/core/SpokenLines.h"

#include <algorithm>
#include <utility>

namespace kelmora::terminal {

namespace {

constexpr QChar ellipsis(0x2026);

bool endsLine(QChar character) {
  return character == u'\n' || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator;
}

/// A text with a character zero would end there on its way to a screen reader.
bool isSpoken(QChar character) {
  return character == u'\t' || (character.category() != QChar::Other_Control &&
                                character != QChar::ObjectReplacementCharacter);
}

}  // namespace

void SpokenLines::add(QStringView text) {
  while (!text.isEmpty()) {
    const auto end = std::find_if(text.begin(), text.end(), endsLine);
    keep(text.first(end - text.begin()));
    if (end == text.end())
      return;
    endLine();
    text = text.sliced(end - text.begin() + 1);
  }
}

void SpokenLines::keep(QStringView piece) {
  for (const QChar character : piece) {
    if (restLength_ > longestLine)
      return;
    if (restLength_ == longestLine && isSpoken(character))
      rest_ += ellipsis;
    else if (isSpoken(character))
      rest_ += character;
    else
      continue;
    ++restLength_;
  }
}

void SpokenLines::endLine() {
  keepRest();
  restLength_ = 0;
}

void SpokenLines::keepRest() {
  if (hasRest())
    lines_ << rest_.simplified();
  rest_.clear();
  if (lines_.size() > mostLines) {
    lines_.removeFirst();
    ++leftOut_;
  }
}

void SpokenLines::leaveOut(qint64 lines) {
  endLine();
  leftOut_ += lines + lines_.size();
  lines_.clear();
}

SpokenLines::Taken SpokenLines::take(Rest rest) {
  if (rest == Rest::Comes)
    keepRest();
  return {std::exchange(leftOut_, 0), std::exchange(lines_, {})};
}

}  // namespace kelmora::terminal
