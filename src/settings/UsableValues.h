#pragma once

#include <QFont>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

namespace kelmora::settings {

// A stored value can be anything. The functions below turn it into one that the
// window can take without harm. All lengths are in pixels unless said otherwise.

inline constexpr QSize defaultWindowSize{800, 800};
inline constexpr QPoint defaultWindowPos{200, 200};
inline constexpr QSize defaultIconSize{48, 48};
/// No widget of the toolkit can be larger, and a sum of several lengths beyond it
/// could overflow.
inline constexpr int largestIcon = 16777215;
inline constexpr int largestFontPoints = 200;
inline constexpr int largestFontPixels = 400;

/// The stored size, or the default where the stored one is empty, or wider or
/// higher than the largest.
[[nodiscard]] QSize usableWindowSize(QSize stored, QSize largest);

/// The stored position, or the default where no part of a window of that size
/// would be on any of the screens.
[[nodiscard]] QPoint usableWindowPos(QPoint stored, QSize size, const QList<QRect>& screens);

/// The position to store, on the platform of that name. On Wayland a window is not told
/// where it stands: its own position is the size of its border, with the title above the
/// screen. There it stays what it was at the start.
[[nodiscard]] QPoint posToStore(QPoint now, QPoint atStart, const QString& platform);

/// A width or height above largestIcon becomes 48. A size with a negative width
/// or height stays as it is: the toolkit takes it as "the size that is usual in
/// this style".
[[nodiscard]] QSize usableIconSize(QSize stored);

/// The font with its size and its spacings brought down to what the toolkit can
/// lay out.
[[nodiscard]] QFont usableFont(QFont font);

/// Reads a font from a text that QFont::toString has written, and makes it usable.
/// Any other text gives the application's default font.
[[nodiscard]] QFont fontFromText(const QString& text);

}  // namespace kelmora::settings
