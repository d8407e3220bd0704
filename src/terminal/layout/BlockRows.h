#pragma once

#include <QTextBlock>
#include <vector>

#include "terminal/layout/BlockEstimate.h"

class QTextDocument;

namespace kelmora::terminal {

/// Where the blocks of a document are, one below the other. Each has a measure: the
/// size of its lines if it has been broken into lines, which is called placed here, and
/// an estimate otherwise. Lengths are in pixels, from the document's top left corner.
/// All functions need a document with a page size.
class BlockRows {
 public:
  struct Row {
    qreal top = 0;
    qreal bottom = 0;
    qreal widest = 0;  ///< the width of the widest block down to this one
    qreal marginBelow = 0;
  };

  /// A part of the document's height.
  struct Stretch {
    qreal top;
    qreal bottom;
  };

  /// The document outlives this.
  explicit BlockRows(const QTextDocument& document) : document_(document) {}

  /// The document's content has changed there; lengths are in characters.
  void noteChange(int from, int length);
  /// While true, measuring a block never breaks it into lines.
  void setWriting(bool isWriting) { isWriting_ = isWriting; }
  [[nodiscard]] bool isWriting() const { return isWriting_; }

  [[nodiscard]] qreal contentWidth() const;
  [[nodiscard]] const Row& rowOf(const QTextBlock& block);
  [[nodiscard]] const Row& last();
  /// The block at a height; above or below all blocks, the nearest one.
  [[nodiscard]] QTextBlock blockAt(qreal height);

  /// Breaks the block into lines. Returns whether its size changed by that.
  bool place(const QTextBlock& block);
  [[nodiscard]] static bool isPlaced(const QTextBlock& block);
  /// Measures blocks of uncertain height exactly, from the last one up, for so many
  /// milliseconds. Returns whether any are left.
  bool refine(int milliseconds);
  /// Frees the lines of blocks that are near none of these parts, if there are many.
  void keepNear(const std::vector<Stretch>& seen);

 private:
  class Measure;

  /// The block's measure, which is estimated first if it is unknown.
  Measure& measured(const QTextBlock& block);
  /// Brings the rows up to date.
  void sumUp();

  const QTextDocument& document_;
  BlockEstimate estimate_;
  std::vector<Row> rows_;      ///< by block number
  std::size_t validRows_ = 0;  ///< so many of them, from the first, are up to date
  std::size_t placed_ = 0;     ///< at least as many blocks have lines in memory
  bool isWriting_ = false;
};

}  // namespace kelmora::terminal
