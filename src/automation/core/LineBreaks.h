#pragma once

#include <QString>

namespace kelmora::automation {

/// The text on one line: without line feeds, carriage returns, vertical tabs,
/// form feeds, and the three breaks that Unicode has of its own.
[[nodiscard]] inline QString withoutLineBreaks(QString text) {
  const auto isLineBreak = [](QChar character) {
    return (character >= u'\n' && character <= u'\r') || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator || character == QChar(0x85);
  };
  return text.removeIf(isLineBreak);
}

}  // namespace kelmora::automation
