#pragma once

#include <QFont>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

namespace kelmora::settings {

/// A stored value can be anything; these turn it into one that the window can
/// take without harm. All lengths are pixels unless said otherwise.
inline constexpr QSize defaultWindowSize{800, 800};
inline constexpr QPoint defaultWindowPos{200, 200};
inline constexpr QSize defaultIconSize{48, 48};
/// The toolkit makes no widget larger, and adds up the lengths of several.
inline constexpr int largestIcon = 16777215;
inline constexpr int largestFontPoints = 200;
inline constexpr int largestFontPixels = 400;

/// The stored size, or the default for one that is empty or larger than largest
/// in either direction.
[[nodiscard]] QSize usableWindowSize(QSize stored, QSize largest);

/// The stored position, or the default when a window of that size would touch
/// none of the screens.
[[nodiscard]] QPoint usableWindowPos(QPoint stored, QSize size, const QList<QRect>& screens);

/// Each dimension from 0 to largestIcon stays, a larger one becomes 48. A size
/// with a negative one stays, too: it asks the toolkit for the style's own.
[[nodiscard]] QSize usableIconSize(QSize stored);

/// The font with its size and spacings brought down to what can be laid out.
[[nodiscard]] QFont usableFont(QFont font);

/// The usable font of a text from QFont::toString; the default-constructed font
/// for a text that does not parse.
[[nodiscard]] QFont fontFromText(const QString& text);

}  // namespace kelmora::settings
