#pragma once

#include <QString>

namespace kelmora::automation {

/// The text without any line breaks: line feeds, vertical tabs, form feeds, carriage
/// returns, and the three that Unicode adds (U+0085, U+2028 and U+2029).
[[nodiscard]] inline QString withoutLineBreaks(QString text) {
  const auto isLineBreak = [](QChar character) {
    return (character >= u'\n' && character <= u'\r') || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator || character == QChar(0x85);
  };
  return text.removeIf(isLineBreak);
}

}  // namespace kelmora::automation
