#include "dialogs/ColourButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>
#include <cmath>

namespace kelmora::dialogs {

namespace {

constexpr int frameWidth = 3;  // pixels, left to the style's own frame
constexpr int focusInset = 2;  // pixels between the frame and what shows the focus

// The relative luminance of the same guidelines, from 0 (black) to 1 (white).
double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

}  // namespace

QColor readableOn(const QColor& background) {
  // At this luminance black and white stand out equally well. The measure is the
  // contrast ratio of the Web Content Accessibility Guidelines.
  constexpr double middle = 0.1791;
  return luminance(background) > middle ? Qt::black : Qt::white;
}

QColor ColourButton::colour() const {
  return palette().color(QPalette::Button);
}

void ColourButton::setColour(const QColor& colour) {
  QPalette changed;  // sets the Button role alone; the others follow the theme
  changed.setColor(QPalette::Button, colour);
  setPalette(changed);
  setToolTip(colour.name());
  setAccessibleDescription(colour.name());
}

void ColourButton::paintEvent(QPaintEvent* /*event*/) {
  // Some styles shade the Button role, others ignore it. So the style draws the
  // frame in the colours of the theme, and the button's colour is painted into it
  // exactly as it is.
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
