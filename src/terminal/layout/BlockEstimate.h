#pragma once

#include <QSizeF>
#include <QStringView>
#include <QTextBlock>
#include <vector>

namespace kelmora::terminal {

/// Estimates how large a block of a document will be, from its text and a few
/// measures of the font. That is much cheaper than breaking it into lines.
class BlockEstimate {
 public:
  struct Size {
    QSizeF pixels;
    /// Whether breaking the block into lines is sure to give the same size: plain
    /// ASCII text in a fixed-pitch font.
    bool isCertain = false;
  };

  /// Measures the document's font, and forgets the formats it has looked at. Call
  /// it first, and again when the font or the formats' numbers change.
  void measureFont(const QTextDocument& document);
  /// The content's width is in pixels; 0 or less means that lines never wrap.
  [[nodiscard]] Size of(const QTextBlock& block, qreal contentWidth);

 private:
  struct Rows {
    qsizetype count = 0;
    qsizetype widest = 0;  ///< in characters
    bool isCertain = true;
  };

  /// Whether the block's formats change nothing but colours, underlines and links.
  [[nodiscard]] bool isPlain(const QTextBlock& block);
  void checkNewFormats(const QTextDocument& document);
  [[nodiscard]] static Rows rowsOf(QStringView text, qsizetype columns);
  static void wrap(QStringView line, qsizetype columns, Rows& rows);

  qreal rowHeight_ = 0;
  qreal characterWidth_ = 1;
  bool isFixedPitch_ = false;
  /// By a format's index, whether it may change the size of text.
  std::vector<bool> changesSize_;
  bool anyChangesSize_ = false;
};

}  // namespace kelmora::terminal
