#pragma once

#include <QByteArrayView>
#include <optional>

namespace kelmora::automation {

/// Walks a text line by line without copying it. A line ends at a line break,
/// the last one also at the end of the text; the end is not part of the line,
/// nor is one carriage return before it. Every other byte is kept, lone
/// carriage returns and NULs among them.
class TextLines {
 public:
  /// The text must outlive the walk and its lines.
  explicit TextLines(QByteArrayView text) : rest_(text) {}

  /// The next line; nothing at the end of the text.
  [[nodiscard]] std::optional<QByteArrayView> next() {
    if (rest_.isEmpty())
      return std::nullopt;
    const qsizetype lineBreak = rest_.indexOf('\n');
    QByteArrayView line = lineBreak < 0 ? rest_ : rest_.first(lineBreak);
    rest_ = rest_.sliced(lineBreak < 0 ? rest_.size() : lineBreak + 1);
    if (line.endsWith('\r'))
      line.chop(1);
    return line;
  }

 private:
  QByteArrayView rest_;
};

}  // namespace kelmora::automation
