#include "settings/UsableValues.h"

#include <algorithm>

namespace kelmora::settings {

namespace {

// In pixels or per cent, as the font says. Larger spacings overflow the
// fixed-point numbers of the toolkit's text layout; sensible ones are far smaller.
constexpr qreal widestSpacing = 400;

bool isUsableSpacing(qreal spacing) {
  return spacing >= -widestSpacing && spacing <= widestSpacing;  // false for NaN
}

// In 64 bits: a stored position can be the largest or the smallest int.
bool overlap(qint64 start, qint64 length, qint64 otherStart, qint64 otherLength) {
  return start < otherStart + otherLength && otherStart < start + length;
}

}  // namespace

QSize usableWindowSize(QSize stored, QSize largest) {
  const bool fits = stored.width() <= largest.width() && stored.height() <= largest.height();
  return !stored.isEmpty() && fits ? stored : defaultWindowSize;
}

QPoint usableWindowPos(QPoint stored, QSize size, const QList<QRect>& screens) {
  const bool seen = std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
    return overlap(stored.x(), size.width(), screen.x(), screen.width()) &&
           overlap(stored.y(), size.height(), screen.y(), screen.height());
  });
  return seen ? stored : defaultWindowPos;
}

QPoint posToStore(QPoint now, QPoint atStart, const QString& platform) {
  return platform.startsWith(QLatin1String("wayland")) ? atStart : now;
}

QSize usableIconSize(QSize stored) {
  if (!stored.isValid())
    return stored;
  const auto usable = [](int length, int fallback) {
    return length <= largestIcon ? length : fallback;
  };
  return {usable(stored.width(), defaultIconSize.width()),
          usable(stored.height(), defaultIconSize.height())};
}

QFont usableFont(QFont font) {
  if (font.pointSizeF() > largestFontPoints)
    font.setPointSize(largestFontPoints);
  if (font.pixelSize() > largestFontPixels)
    font.setPixelSize(largestFontPixels);
  if (!isUsableSpacing(font.letterSpacing()))
    font.setLetterSpacing(QFont::PercentageSpacing, 0);
  if (!isUsableSpacing(font.wordSpacing()))
    font.setWordSpacing(0);
  return font;
}

QFont fontFromText(const QString& text) {
  QFont font;
  (void)font.fromString(text);  // which leaves the font alone where it cannot read the text
  return usableFont(font);
}

}  // namespace kelmora::settings
