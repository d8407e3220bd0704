#include "terminal/layout/ListMarker.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetrics>
#include <QTextDocument>
#include <QTextList>
#include <algorithm>

namespace kelmora::terminal {

namespace listmarker {

namespace {

/// Later releases of the toolkit draw a list's dots in the colour of its text.
constexpr bool dotsHaveTextColour = QT_VERSION >= QT_VERSION_CHECK(6, 5, 0);

struct Marker {
  QString text;  ///< empty for a dot
  QFont font;
  QSize size;
};

Marker markerOf(const QTextBlock& block, const QFont& font) {
  const QTextList& list = *block.textList();
  const QFontMetrics metrics(font);
  Marker marker{{}, font, {}};
  // Of all markers without text, the HTML that passes the filter makes only discs.
  if (list.format().style() == QTextListFormat::ListDisc) {
    const int side = metrics.lineSpacing() / 3;
    marker.size = {side, side};
  } else {
    marker.text = list.itemText(block);
    marker.size = {metrics.horizontalAdvance(marker.text), metrics.height()};
  }
  return marker;
}

void paintDot(QPainter& painter, const QRectF& place, const QBrush& brush) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(brush);
  painter.drawEllipse(place);
}

void paintText(QPainter& painter, const Marker& marker, const QPointF& place,
               Qt::LayoutDirection direction) {
  QTextLayout text(marker.text, marker.font, painter.device());
  QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
  option.setTextDirection(direction);
  text.setTextOption(option);
  text.beginLayout();
  QTextLine line = text.createLine();
  line.setLeadingIncluded(true);
  text.endLayout();
  text.draw(&painter, place);
}

}  // namespace

void paint(QPainter& painter, const QTextBlock& block, const QPointF& origin,
           const QPalette& palette, const QList<QTextLayout::FormatRange>& selections) {
  QFont font = block.charFormat().font();
  if (QPaintDevice* device = block.document()->documentLayout()->paintDevice())
    font = QFont(font, device);
  const Marker marker = markerOf(block, font);
  const QFontMetrics metrics(font);
  const QTextLine first = block.layout()->lineAt(0);
  const bool leftToRight = block.textDirection() == Qt::LeftToRight;
  const QPoint corner = (origin + first.naturalTextRect().topLeft()).toPoint();
  QRectF place(corner, marker.size);
  const int gap = metrics.horizontalAdvance(u' ');
  const int middle = metrics.height() / 2;  // whole pixels, as the toolkit has it
  place.translate(leftToRight ? -gap - marker.size.width() : first.naturalTextWidth() + gap,
                  middle - marker.size.height() / 2.0);
  QBrush textBrush = block.charFormat().foreground();
  if (textBrush.style() == Qt::NoBrush)
    textBrush = palette.brush(QPalette::Text);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const auto selected = std::find_if(selections.begin(), selections.end(),
                                     [](const auto& range) { return range.start < 0; });
  if (selected != selections.end()) {
    painter.fillRect(place, selected->format.background());
    textBrush = selected->format.foreground();
  }
  painter.setPen(QPen(textBrush, 0));
  if (marker.text.isEmpty())
    paintDot(painter, place, dotsHaveTextColour ? textBrush : palette.brush(QPalette::Text));
  else
    paintText(painter, marker, {place.left(), static_cast<qreal>(corner.y())},
              block.textDirection());
  painter.restore();
}

}  // namespace listmarker

}  // namespace kelmora::terminal
