#pragma once

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <vector>

#include "terminal/view/BlockEstimate.h"

namespace kelmora::terminal {

/// The layout of a long document that grows at its end: only blocks that are
/// painted or asked for are broken into lines, of all others the height is an
/// estimate until then. What is in sight looks as the toolkit's own layout has
/// it. Lengths are pixels, from the document's top left corner.
/// What stands in a frame or a table is laid out as if it stood in none.
class PaneLayout : public QAbstractTextDocumentLayout {
  Q_OBJECT

 public:
  /// A child of the document, which takes it over by setDocumentLayout().
  explicit PaneLayout(QTextDocument& document);

  void draw(QPainter* painter, const PaintContext& context) override;
  [[nodiscard]] int hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const override;
  [[nodiscard]] int pageCount() const override { return 1; }
  [[nodiscard]] QSizeF documentSize() const override;
  [[nodiscard]] QRectF frameBoundingRect(QTextFrame* frame) const override;
  /// Breaks the block into lines if nobody has, as cursors rely on it.
  [[nodiscard]] QRectF blockBoundingRect(const QTextBlock& block) const override;

  /// Until endWriting() changes are noted, and nothing is measured or told.
  void beginWriting() { isWriting_ = true; }
  void endWriting() { isWriting_ = false; }
  /// Breaks all blocks between two heights into lines. Answers whether a height
  /// changed by that.
  bool layOut(qreal top, qreal bottom);
  /// Does so, from the newest block up, with those whose height is uncertain,
  /// for so many milliseconds. Answers whether there are more.
  bool refine(int milliseconds);
  /// Forgets the lines of what is not near to these heights, where there are many.
  void keepNear(qreal top, qreal bottom);
  /// Emits documentSizeChanged() if the size is another than it was last told.
  void tellSize();

  /// These break nothing into lines.
  [[nodiscard]] qreal topOf(const QTextBlock& block) const;
  /// Where the last block ends, however far down.
  [[nodiscard]] qreal bottom() const;
  /// The block at a height, the nearest one above and below all.
  [[nodiscard]] QTextBlock blockAt(qreal height) const;
  /// The first block between two heights that is broken into lines.
  [[nodiscard]] QTextBlock firstLaidOut(qreal top, qreal bottom) const;

 protected:
  void documentChanged(int from, int oldLength, int length) override;

 private:
  class Measure;
  struct Row {
    qreal top = 0;
    qreal bottom = 0;
    qreal widest = 0;  ///< down to here
    qreal marginBelow = 0;
  };

  [[nodiscard]] bool isReady() const;
  [[nodiscard]] qreal contentWidth() const;
  void noteChange(int from, int length);
  /// The block's measure, estimated if need be.
  Measure& measured(const QTextBlock& block);
  /// Answers whether the block's height changed.
  bool place(const QTextBlock& block);
  void sumUp();
  [[nodiscard]] const Row& rowOf(const QTextBlock& block) const;
  [[nodiscard]] bool isStepOfWalk(const QTextBlock& block) const;
  void tellSizeLater();
  /// Tells the size, and that what stands below a height looks another way.
  void tellChange(qreal top);

  BlockEstimate estimate_;
  std::vector<Row> rows_;  ///< by block
  std::size_t validRows_ = 0;
  std::size_t placed_ = 0;  ///< blocks broken into lines since they were last counted
  QSizeF told_;
  bool isWriting_ = false;
  bool isTelling_ = false;
  bool tellsLater_ = false;
  mutable int nextStep_ = -1;
};

}  // namespace kelmora::terminal
