#pragma once

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QSizeF>
#include <QTextBlock>

namespace kelmora::terminal {

/// Breaks one block of a document into lines, and paints them. All lengths are
/// pixels. A block's own are measured from its top left corner, which lies at the
/// left edge of the document's content even where the block has a left margin.
namespace blocklines {

/// Breaks a block's text into lines, as the toolkit would in a document of that
/// width, and keeps them in the block's own layout. Returns the size of the lines,
/// with the block's left and right margins but not those above and below.
QSizeF place(const QTextBlock& block, qreal contentWidth);
/// Frees the memory of the lines, and of the glyphs that painting has cached.
void release(const QTextBlock& block);
[[nodiscard]] bool arePlaced(const QTextBlock& block);

/// Where a block's lines may begin and end: the content's width without the
/// block's margins and the indentation of its list.
struct Sides {
  qreal left;
  qreal right;
};
[[nodiscard]] Sides sidesOf(const QTextBlock& block, qreal contentWidth);

/// Paints the lines that touch the context's clip, with selections, the marker of
/// a list item and a ruler. The block must be placed; origin is its top left
/// corner in the document.
void paint(QPainter& painter, const QTextBlock& block, const QPointF& origin,
           const QAbstractTextDocumentLayout::PaintContext& context);

}  // namespace blocklines

}  // namespace kelmora::terminal
