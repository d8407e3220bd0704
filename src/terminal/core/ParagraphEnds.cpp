#include "terminal/core/ParagraphEnds.h"

#include <algorithm>

namespace kelmora::terminal {

std::optional<ParagraphEnds::End> ParagraphEnds::next(QStringView text, qsizetype from) {
  const qsizetype begin = from - length_;  // of the paragraph
  if (const qsizetype earliest = begin + lengths_.longParagraph; earliest < text.size()) {
    const qsizetype latest = begin + lengths_.longestParagraph;
    const qsizetype lineEnd = text.first(std::min(latest, text.size()))
                                  .indexOf(QChar::LineSeparator, std::max(earliest, from));
    if (lineEnd >= 0 || latest < text.size()) {
      length_ = 0;
      if (lineEnd >= 0)
        return End{lineEnd, 1};
      return End{latest - (text[latest].isLowSurrogate() ? 1 : 0), 0};
    }
  }
  length_ = text.size() - begin;
  return std::nullopt;
}

bool ParagraphEnds::endsWithLine(qsizetype characters) {
  length_ += characters;
  const bool ends = length_ >= lengths_.longParagraph;
  length_ = ends ? 0 : length_ + 1;
  return ends;
}

}  // namespace kelmora::terminal
