#pragma once

#include <QList>
#include <QPainter>
#include <QTextBlock>
#include <QTextLayout>

namespace kelmora::terminal {

namespace listmarker {

/// Paints the number or the dot before the first line of a list item. The block
/// must be placed; the selections' positions are counted from its start.
void paint(QPainter& painter, const QTextBlock& block, const QPointF& origin,
           const QPalette& palette, const QList<QTextLayout::FormatRange>& selections);

}  // namespace listmarker

}  // namespace kelmora::terminal
