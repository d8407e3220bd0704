#include "dialogs/ColourButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>
#include <cmath>

namespace kelmora::dialogs {

namespace {

constexpr int frameWidth = 3;  // pixels left to the style's own frame
constexpr int focusInset = 2;

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

}  // namespace

QColor readableOn(const QColor& background) {
  // Where both contrast equally, by the usual definition of contrast.
  constexpr double middle = 0.1791;
  return luminance(background) > middle ? Qt::black : Qt::white;
}

QColor ColourButton::colour() const {
  return palette().color(QPalette::Button);
}

void ColourButton::setColour(const QColor& colour) {
  QPalette changed;  // every other role stays the theme's
  changed.setColor(QPalette::Button, colour);
  setPalette(changed);
  setToolTip(colour.name());
  setAccessibleDescription(colour.name());
}

void ColourButton::paintEvent(QPaintEvent* /*event*/) {
  // Styles shade the Button role, or ignore it, as they please. So the frame
  // keeps the theme's colours, and the colour itself is laid into it unshaded.
  QStyleOptionButton option;
  initStyleOption(&option);
  if (const QWidget* parent = parentWidget())
    option.palette = parent->palette();
  QStylePainter painter(this);
  painter.drawControl(QStyle::CE_PushButtonBevel, option);

  QRect swatch = rect().adjusted(frameWidth, frameWidth, -frameWidth, -frameWidth);
  if (isDown())
    swatch.translate(1, 1);
  const QColor background = colour();
  const QColor ink = readableOn(background);
  painter.fillRect(swatch, background);
  painter.setPen(ink);
  painter.drawText(swatch, Qt::AlignCenter | Qt::TextShowMnemonic, text());
  if (hasFocus()) {
    painter.setPen(QPen(ink, 1, Qt::DotLine));
    painter.drawRect(swatch.adjusted(focusInset, focusInset, -focusInset - 1, -focusInset - 1));
  }
}

}  // namespace kelmora::dialogs
