#pragma once

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>

#include "terminal/layout/BlockRows.h"

namespace kelmora::terminal {

/// A layout for a long document that grows at its end. It breaks only those blocks
/// into lines that are painted or asked for, and estimates the height of all others.
/// What is visible looks exactly as in the toolkit's own layout, but frames and
/// tables are ignored: their text is laid out like any other. Lengths are in pixels,
/// from the document's top left corner.
class PaneLayout : public QAbstractTextDocumentLayout {
  Q_OBJECT

 public:
  /// Give the layout to the document with setDocumentLayout(); it then owns it.
  explicit PaneLayout(QTextDocument& document);

  void draw(QPainter* painter, const PaintContext& context) override;
  [[nodiscard]] int hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const override;
  [[nodiscard]] int pageCount() const override { return 1; }
  [[nodiscard]] QSizeF documentSize() const override;
  [[nodiscard]] QRectF frameBoundingRect(QTextFrame* frame) const override;
  /// Breaks the block into lines first if need be, because cursors rely on them.
  [[nodiscard]] QRectF blockBoundingRect(const QTextBlock& block) const override;

  /// Until endWriting(), changes are only noted: nothing is measured, and no signal
  /// is emitted.
  void beginWriting() { rows_.setWriting(true); }
  void endWriting() { rows_.setWriting(false); }
  /// Breaks all blocks between two heights into lines. Returns whether that changed
  /// the height of any block.
  bool layOut(qreal top, qreal bottom);
  /// Measures blocks of uncertain height exactly, from the last one up, for so many
  /// milliseconds. Returns whether any are left.
  bool refine(int milliseconds);
  using Stretch = BlockRows::Stretch;
  /// Frees the lines of blocks that are near none of these parts, if there are many.
  void keepNear(const std::vector<Stretch>& seen);
  /// Emits documentSizeChanged() if the size has changed since it was last emitted.
  void emitSizeChange();

  // The following break nothing into lines.
  [[nodiscard]] qreal topOf(const QTextBlock& block) const;
  /// The top of the line with a place in the block, counted in characters; an estimate
  /// if the block is not broken into lines.
  [[nodiscard]] qreal topOf(const QTextBlock& block, int place) const;
  /// The height at which the last block ends.
  [[nodiscard]] qreal bottom() const;
  /// The block at a height; above or below all blocks, the nearest one.
  [[nodiscard]] QTextBlock blockAt(qreal height) const;
  /// The first block between two heights that is broken into lines.
  [[nodiscard]] QTextBlock firstLaidOut(qreal top, qreal bottom) const;

 protected:
  void documentChanged(int from, int oldLength, int length) override;

 private:
  [[nodiscard]] bool isReady() const;
  [[nodiscard]] bool isStepOfWalk(const QTextBlock& block) const;
  void emitChangeLater();
  /// Emits that the size may have changed, and all that is below a height.
  void emitChange(qreal top);

  /// Mutable because questions to a layout are const, and have it measure blocks.
  mutable BlockRows rows_;
  QSizeF emittedSize_;
  bool isEmitting_ = false;
  bool emitsLater_ = false;
  mutable int nextStep_ = -1;  ///< the next block of a walk, see isStepOfWalk(); -1 for none
};

}  // namespace kelmora::terminal
