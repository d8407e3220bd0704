#include "dialogs/FontButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>
#include <algorithm>

namespace kelmora::dialogs {

namespace {

// What a label can be read in. A font has its size in points or in pixels.
constexpr qreal smallestPoints = 7;
constexpr qreal largestPoints = 14;
constexpr int smallestPixels = 9;
constexpr int largestPixels = 19;
constexpr QSize largestButton{280, 48};  // pixels; wide spacings widen a label too

QFont labelFont(QFont font) {
  if (font.pixelSize() > 0)
    font.setPixelSize(std::clamp(font.pixelSize(), smallestPixels, largestPixels));
  else
    font.setPointSizeF(std::clamp(font.pointSizeF(), smallestPoints, largestPoints));
  return font;
}

}  // namespace

void FontButton::setShownFont(const QFont& font) {
  setFont(font);
  setToolTip(font.pixelSize() > 0
                 ? tr("%1, %2 pixels").arg(font.family(), QString::number(font.pixelSize()))
                 : tr("%1, %2 points").arg(font.family(), QString::number(font.pointSizeF())));
  setAccessibleDescription(toolTip());
}

QSize FontButton::sizeHint() const {
  QStyleOptionButton option;
  initStyleOption(&option);
  option.fontMetrics = QFontMetrics(labelFont(font()));
  const QSize label = option.fontMetrics.size(Qt::TextShowMnemonic, text());
  return style()
      ->sizeFromContents(QStyle::CT_PushButton, &option, label, this)
      .boundedTo(largestButton);
}

void FontButton::paintEvent(QPaintEvent* /*event*/) {
  QStyleOptionButton option;
  initStyleOption(&option);
  const QFont drawn = labelFont(font());
  option.fontMetrics = QFontMetrics(drawn);
  QStylePainter painter(this);
  painter.setFont(drawn);
  painter.drawControl(QStyle::CE_PushButton, option);
}

}  // namespace kelmora::dialogs
