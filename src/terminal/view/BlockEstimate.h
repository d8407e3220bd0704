#pragma once

#include <QSizeF>
#include <QStringView>
#include <QTextBlock>
#include <vector>

namespace kelmora::terminal {

/// Tells how much room a block of a document will take, from its text and one
/// look at the font, for a small part of what breaking it into lines costs.
class BlockEstimate {
 public:
  struct Size {
    QSizeF pixels;
    /// Whether the lines will not turn out otherwise: text of the usual kind in
    /// a font of one pitch.
    bool isCertain = false;
  };

  /// Looks at the document's font, and forgets what it knew of its formats.
  void look(const QTextDocument& document);
  /// In a document whose content has that width, in pixels; not above 0 where
  /// lines are never broken.
  [[nodiscard]] Size of(const QTextBlock& block, qreal contentWidth);

 private:
  struct Rows {
    qsizetype count = 0;
    qsizetype widest = 0;  ///< in characters
    bool isCertain = true;
  };

  /// Whether no more than colours and links set a block's characters apart.
  [[nodiscard]] bool isPlain(const QTextBlock& block);
  void lookAtFormats(const QTextDocument& document);
  [[nodiscard]] static Rows rowsOf(QStringView text, qsizetype columns);
  static void wrap(QStringView line, qsizetype columns, Rows& rows);

  qreal rowHeight_ = 0;
  qreal advance_ = 1;  ///< of a character, on average
  bool isFixedPitch_ = false;
  std::vector<bool> shaping_;  ///< formats that change more than colours, by index
  bool anyShaping_ = false;
};

}  // namespace kelmora::terminal
