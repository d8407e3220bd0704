#include "terminal/layout/BlockLines.h"

#include <QStyle>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextList>
#include <algorithm>

#include "terminal/layout/ListMarker.h"

namespace kelmora::terminal {

namespace blocklines {

namespace {

/// The colour in which the toolkit draws rulers; later releases use another.
constexpr auto rulerRole =
    QT_VERSION < QT_VERSION_CHECK(6, 5, 0) ? QPalette::Dark : QPalette::WindowText;

/// The width of a line that is never broken: wider than any text.
constexpr qreal unlimited = 1 << 24;

QTextOption optionFor(const QTextBlock& block, const QTextBlockFormat& format, qreal contentWidth) {
  QTextOption option = block.document()->defaultTextOption();
  const Qt::LayoutDirection direction = block.textDirection();
  option.setTextDirection(direction);
  option.setTabs(format.tabPositions());
  option.setAlignment(QStyle::visualAlignment(
      direction,
      format.hasProperty(QTextFormat::BlockAlignment) ? format.alignment() : option.alignment()));
  if (format.nonBreakableLines() || contentWidth <= 0)
    option.setWrapMode(QTextOption::ManualWrap);
  return option;
}

/// The parts of selections that lie in a block, counted from its start.
QList<QTextLayout::FormatRange> selectionsIn(
    const QTextBlock& block, const QAbstractTextDocumentLayout::PaintContext& context) {
  QList<QTextLayout::FormatRange> ranges;
  for (const auto& selection : context.selections) {
    const int start = selection.cursor.selectionStart() - block.position();
    const int end = selection.cursor.selectionEnd() - block.position();
    if (start < block.length() && end > 0 && end > start)
      ranges.append({start, end - start, selection.format});
  }
  return ranges;
}

void paintRuler(QPainter& painter, const QTextBlockFormat& format, const QRectF& block,
                qreal height, const QPalette& palette) {
  const qreal width =
      format.lengthProperty(QTextFormat::BlockTrailingHorizontalRulerWidth).value(block.width());
  const qreal middle = block.center().x();
  painter.setPen(palette.color(rulerRole));
  painter.drawLine(QLineF(middle - width / 2, height, middle + width / 2, height));
}

}  // namespace

Sides sidesOf(const QTextBlock& block, qreal contentWidth) {
  const QTextBlockFormat format = block.blockFormat();
  int depth = format.indent();
  if (const QTextList* list = block.textList())
    depth += list->format().indent();
  const qreal indent = depth * block.document()->indentWidth();
  const bool leftToRight = block.textDirection() == Qt::LeftToRight;
  return {format.leftMargin() + (leftToRight ? indent : 0),
          contentWidth - format.rightMargin() - (leftToRight ? 0 : indent)};
}

QSizeF place(const QTextBlock& block, qreal contentWidth) {
  QTextLayout& layout = *block.layout();
  const QTextBlockFormat format = block.blockFormat();
  layout.setTextOption(optionFor(block, format, contentWidth));
  // The toolkit's cache keeps the width of a word that was broken at a soft hyphen
  // with that hyphen, which would be wrong when the block is broken again.
  layout.setCacheEnabled(!block.text().contains(QChar::SoftHyphen));
  const Sides sides = sidesOf(block, contentWidth);
  const bool leftToRight = block.textDirection() == Qt::LeftToRight;
  qreal firstIndent = format.textIndent();
  QSizeF size(0, 0);
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    const qreal left = sides.left + (leftToRight ? firstIndent : 0);
    const qreal right = sides.right - (leftToRight ? 0 : firstIndent);
    firstIndent = 0;
    line.setLeadingIncluded(true);
    const qreal width = contentWidth <= 0 ? unlimited : std::max<qreal>(right - left, 0);
    line.setLineWidth(width);
    // A word too long for the line makes its text wider than the line. The line is
    // widened, as cursors cannot go beyond its width.
    if (line.naturalTextWidth() > width)
      line.setLineWidth(line.naturalTextWidth());
    line.setPosition({left, size.height()});
    size.rheight() += line.height();
    size.setWidth(
        std::max(size.width(), left + line.naturalTextWidth() + contentWidth - sides.right));
  }
  layout.endLayout();
  return size;
}

void release(const QTextBlock& block) {
  QTextLayout& layout = *block.layout();
  // The toolkit frees the glyphs only for an empty layout with its cache off.
  layout.setCacheEnabled(false);
  layout.beginLayout();
  layout.endLayout();
}

bool arePlaced(const QTextBlock& block) {
  return block.layout()->lineCount() > 0;
}

void paint(QPainter& painter, const QTextBlock& block, const QPointF& origin,
           const QAbstractTextDocumentLayout::PaintContext& context) {
  QTextLayout& layout = *block.layout();
  layout.setPosition(origin);
  QRectF rect = layout.boundingRect();
  rect.moveTopLeft(origin);
  if (context.clip.isValid() &&
      (rect.bottom() < context.clip.top() || rect.top() > context.clip.bottom()))
    return;
  const auto selections = selectionsIn(block, context);
  if (block.textList())
    listmarker::paint(painter, block, origin, context.palette, selections);
  // The toolkit draws text wrong far down in a very tall document, so the painter
  // is moved there first. Not everywhere, because large glyphs that are drawn
  // through a moved painter come out in a slightly different shade.
  constexpr qreal room = 1 << 20;
  const QPointF corner(0, origin.y() < room ? 0 : std::floor(origin.y()));
  const QPen pen = painter.pen();
  painter.setPen(context.palette.color(QPalette::Text));
  painter.translate(corner);
  layout.draw(&painter, -corner, selections,
              context.clip.isValid() ? context.clip.translated(-corner) : context.clip);
  if (context.cursorPosition >= block.position() &&
      context.cursorPosition < block.position() + block.length())
    layout.drawCursor(&painter, -corner, context.cursorPosition - block.position());
  painter.translate(-corner);
  const QTextBlockFormat format = block.blockFormat();
  if (format.hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth))
    paintRuler(painter, format, rect, block.length() > 1 ? rect.bottom() : rect.center().y(),
               context.palette);
  painter.setPen(pen);
}

}  // namespace blocklines

}  // namespace kelmora::terminal
