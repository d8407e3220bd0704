#pragma once

#include <QByteArrayView>
#include <optional>

namespace kelmora::automation {

/// Goes through a text line by line without copying it. A line ends at a line
/// feed; the last one may end with the text instead. Neither the line feed nor one
/// carriage return before it is part of the line. All other bytes are kept, also
/// NUL bytes and carriage returns elsewhere.
class TextLines {
 public:
  /// Keeps no copy: the text must outlive this object and the lines it returns.
  explicit TextLines(QByteArrayView text) : rest_(text) {}

  /// The next line; nothing at the end of the text.
  [[nodiscard]] std::optional<QByteArrayView> next() {
    if (rest_.isEmpty())
      return std::nullopt;
    ++number_;
    const qsizetype lineFeed = rest_.indexOf('\n');
    QByteArrayView line = lineFeed < 0 ? rest_ : rest_.first(lineFeed);
    rest_ = rest_.sliced(lineFeed < 0 ? rest_.size() : lineFeed + 1);
    if (line.endsWith('\r'))
      line.chop(1);
    return line;
  }

  /// The number of the line that next() returned last; the first line is 1.
  [[nodiscard]] qsizetype number() const { return number_; }

 private:
  QByteArrayView rest_;
  qsizetype number_ = 0;
};

}  // namespace kelmora::automation
