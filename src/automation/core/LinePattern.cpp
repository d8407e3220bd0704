#include "automation/core/LinePattern.h"

#include <QStringView>
#include <algorithm>
#include <utility>

namespace kelmora::automation {

namespace {

/// A part of a line with fewer letters and digits stands in far too many others.
constexpr qsizetype fewestLetters = 3;
/// In characters. So much of a line tells it from others, and still fits the editor.
constexpr qsizetype longestPattern = 500;

/// Bytes that are no UTF-8 are most likely letters in another encoding.
bool isOfWord(QChar character) {
  return character.isLetterOrNumber() || character.isMark() || character.isSurrogate() ||
         character == QChar::ReplacementCharacter;
}

bool meansItself(QChar character) {
  return character >= u' ' && character <= u'~' && character != u'"';
}

qsizetype lettersOf(QStringView text) {
  return std::count_if(text.begin(), text.end(), isOfWord);
}

/// Without the words at its ends of which the line holds more.
QStringView wholeWords(QStringView part, bool goesOnBefore, bool goesOnBehind) {
  if (goesOnBefore && !part.isEmpty() && isOfWord(part.front())) {
    const qsizetype blank = part.indexOf(u' ');
    part = blank < 0 ? QStringView() : part.sliced(blank);
  }
  if (goesOnBehind && !part.isEmpty() && isOfWord(part.back()))
    part = part.first(part.lastIndexOf(u' ') + 1);
  return part.trimmed();
}

/// Looks through the parts of a line for the one that tells most.
class BestPart {
 public:
  explicit BestPart(QStringView line) : line_(line) {}

  void add(qsizetype start, qsizetype end) {
    while (start < end && line_[start] == u' ')
      ++start;
    const bool goesOnBefore = start > 0 && isOfWord(line_[start - 1]);
    bool goesOnBehind = end < line_.size() && isOfWord(line_[end]);
    if (end - start > longestPattern) {
      end = start + longestPattern;
      goesOnBehind = isOfWord(line_[end]);
    }
    const QStringView part =
        wholeWords(line_.sliced(start, end - start), goesOnBefore, goesOnBehind);
    const std::pair rank(lettersOf(part), part.size());
    const bool tells = rank.first >= fewestLetters || part == line_.trimmed();
    if (tells && rank > rank_) {
      rank_ = rank;
      part_ = part;
    }
  }
  [[nodiscard]] QStringView part() const { return part_; }

 private:
  QStringView line_;
  QStringView part_;
  std::pair<qsizetype, qsizetype> rank_{0, 0};
};

}  // namespace

QString patternFor(const QByteArray& line) {
  static constexpr QStringView wildcard = u"{*}";
  // The parts are ASCII, so each is the same bytes in the line.
  const QString text = QString::fromUtf8(line);
  BestPart best(text);
  qsizetype start = 0;
  qsizetype place = 0;
  while (place < text.size()) {
    const QStringView rest = QStringView(text).sliced(place);
    const qsizetype apart = rest.startsWith(wildcard)    ? wildcard.size()
                            : rest.startsWith(tabOfLine) ? tabOfLine.size()
                            : meansItself(rest.front())  ? 0
                                                         : 1;
    if (apart > 0) {
      best.add(start, place);
      start = place + apart;
    }
    place += std::max<qsizetype>(apart, 1);
  }
  best.add(start, place);
  return best.part().toString();
}

}  // namespace kelmora::automation
