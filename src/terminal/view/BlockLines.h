#pragma once

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QSizeF>
#include <QTextBlock>

namespace kelmora::terminal {

/// The lines of one block of a document: where they are, and their picture. All
/// lengths are pixels; those of a block are from its own top left corner, which
/// lies at the left edge of the document's content whatever margins it has.
namespace blocklines {

/// Breaks a block's text into lines, as the toolkit would in a document of that
/// width. They are kept in the block's own layout. Returns what they take, with
/// the block's margins at its sides, but not above and below.
QSizeF place(const QTextBlock& block, qreal contentWidth);
/// Forgets the lines, and the glyphs that painting has left behind.
void release(const QTextBlock& block);
[[nodiscard]] bool arePlaced(const QTextBlock& block);

/// What its margins, and the depth of its list, leave a block of the content's
/// width.
struct Sides {
  qreal left;
  qreal right;
};
[[nodiscard]] Sides sidesOf(const QTextBlock& block, qreal contentWidth);

/// Paints the lines that the context's clip touches, its selections, the marker
/// of a list's item and a ruler. The block's lines are placed; origin is its
/// corner in the document.
void paint(QPainter& painter, const QTextBlock& block, const QPointF& origin,
           const QAbstractTextDocumentLayout::PaintContext& context);

}  // namespace blocklines

}  // namespace kelmora::terminal
