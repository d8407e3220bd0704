#include "LayoutCompare.h"

#include <QScreen>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace layout_compare {

namespace {

QString shown(const QRectF& rect) {
  return told(rect);
}
QString shown(const QRect& rect) {
  return told(QRectF(rect));
}
QString shown(const QSizeF& size) {
  return QStringLiteral("%1x%2").arg(size.width(), 0, 'g', 12).arg(size.height(), 0, 'g', 12);
}
QString shown(const QString& text) {
  return text;
}
QString shown(int number) {
  return QString::number(number);
}

template <typename Value>
QString difference(const QString& what, const Value& expected, const Value& found) {
  if (expected == found)
    return {};
  return what + QStringLiteral(": %1, expected %2").arg(shown(found), shown(expected));
}

/// The toolkit paints each large letter in a slightly different shade the first time,
/// before it is cached. The widget with the toolkit's layout is painted first to fill
/// the cache, so the other one must be right in its first picture.
QString ofWidgets(QWidget& expected, QWidget& found, double pixelRatio) {
  (void)pictureOf(expected, pixelRatio);
  return pictureDifference(pictureOf(expected, pixelRatio), pictureOf(found, pixelRatio));
}
QString ofScrollBar(const QString& name, const QScrollBar& expected, const QScrollBar& found) {
  const auto all = [](const QScrollBar& bar) {
    return QStringLiteral("%1 of %2 to %3, page %4, %5")
        .arg(bar.value())
        .arg(bar.minimum())
        .arg(bar.maximum())
        .arg(bar.pageStep())
        .arg(bar.isVisible() ? QStringLiteral("shown") : QStringLiteral("hidden"));
  };
  return difference(name, all(expected), all(found));
}

/// A line of a block: its place, and which characters are on it.
QString linesOf(const QTextBlock& block) {
  QString all;
  for (int i = 0; i < block.layout()->lineCount(); ++i) {
    const QTextLine line = block.layout()->lineAt(i);
    all += QStringLiteral(" [%1+%2 %3, base %4]")
               .arg(line.textStart())
               .arg(line.textLength())
               .arg(told(line.naturalTextRect()))
               .arg(line.ascent());
  }
  return all;
}

QString ofHit(const TwoLayouts& two, const QPointF& point) {
  const QAbstractTextDocumentLayout& expected = *two.expected.document()->documentLayout();
  const QAbstractTextDocumentLayout& found = *two.found.document()->documentLayout();
  const auto what = [&point](const char* name) {
    return QStringLiteral("%1 at (%2, %3)").arg(QLatin1String(name)).arg(point.x()).arg(point.y());
  };
  for (const auto accuracy : {Qt::ExactHit, Qt::FuzzyHit}) {
    const int hit = found.hitTest(point, accuracy);
    if (const int right = expected.hitTest(point, accuracy); hit != right)
      return difference(what(accuracy == Qt::ExactHit ? "exact hit" : "fuzzy hit"), right, hit);
  }
  const QString link = found.anchorAt(point);
  const QString right = expected.anchorAt(point);
  return link == right ? QString() : difference(what("link"), right, link);
}

/// Compares which characters are hit at about so many points of the document and of
/// its surroundings.
QString ofHits(const TwoLayouts& two, int points) {
  const QSizeF size = two.expected.document()->documentLayout()->documentSize();
  const int step = 1 + static_cast<int>(std::sqrt(size.width() * size.height() / points));
  for (int y = -20; y < size.height() + 20; y += step)
    for (int x = -20 + y % 3; x < size.width() + 20; x += step)
      if (const QString hit = ofHit(two, QPointF(x, y)); !hit.isEmpty())
        return hit;
  return {};
}

/// Compares where the caret would be at about so many positions, and which characters
/// are under a horizontal line across the view.
QString ofCursors(const TwoLayouts& two, int positions) {
  const auto caret = [](const QTextBrowser& browser, int position) {
    QTextCursor cursor(browser.document());
    cursor.setPosition(position);
    return browser.cursorRect(cursor);
  };
  const int end = two.expected.document()->characterCount();
  for (int position = 0; position < end; position += 1 + end / positions) {
    const QRect right = caret(two.expected, position);
    if (const QRect rect = caret(two.found, position); rect != right)
      return difference(QStringLiteral("caret at %1").arg(position), right, rect);
  }
  const QRect view = two.expected.viewport()->rect();
  for (int y = 0; y < view.height(); y += 5) {
    const QPoint point(y * view.width() / view.height(), y);
    const int right = two.expected.cursorForPosition(point).position();
    if (const int under = two.found.cursorForPosition(point).position(); under != right)
      return difference(QStringLiteral("position under (%1, %2)").arg(point.x()).arg(y), right,
                        under);
  }
  return {};
}

qint64 pixelsThatDiffer(const QImage& one, const QImage& other) {
  if (one.size() != other.size())
    return std::max(one.width() * one.height(), other.width() * other.height());
  qint64 count = 0;
  for (int y = 0; y < one.height(); ++y)
    for (int x = 0; x < one.width(); ++x)
      count += one.pixel(x, y) != other.pixel(x, y) ? 1 : 0;
  return count;
}

}  // namespace

QString told(const QRectF& rect) {
  return QStringLiteral("(%1, %2 %3x%4)")
      .arg(rect.x(), 0, 'g', 12)
      .arg(rect.y(), 0, 'g', 12)
      .arg(rect.width(), 0, 'g', 12)
      .arg(rect.height(), 0, 'g', 12);
}
QString firstOf(std::initializer_list<QString> differences) {
  for (const QString& one : differences)
    if (!one.isEmpty())
      return one;
  return {};
}

QString ofPictures(TwoLayouts& two, double pixelRatio) {
  return ofWidgets(two.expected, two.found, pixelRatio);
}
QString ofPages(TwoLayouts& two) {
  return ofWidgets(*two.expected.viewport(), *two.found.viewport(), 1);
}

QString ofTexts(const QString& expected, const QString& found) {
  const auto parts = std::mismatch(expected.begin(), expected.end(), found.begin(), found.end());
  const qsizetype from = std::max<qsizetype>(0, parts.first - expected.begin() - 40);
  return difference(QStringLiteral("from character %1 on").arg(from), expected.mid(from, 120),
                    found.mid(from, 120));
}

QString ofScreens(TwoLayouts& two) {
  const auto screen = [](QTextBrowser& browser) {
    // Painting lays out blocks, whose heights may then differ from the estimates.
    for (int paint = 0; paint < 3; ++paint)
      QCoreApplication::processEvents();
    const QPixmap window = browser.screen()->grabWindow(browser.winId());
    const qreal ratio = window.devicePixelRatio();
    const QRect view = browser.viewport()->geometry();
    return window.copy(QRect((QPointF(view.topLeft()) * ratio).toPoint(), view.size() * ratio))
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
  };
  (void)pictureOf(two.expected);
  const QImage expected = screen(two.expected);
  const QImage found = screen(two.found);
  if (found == pictureOf(*two.found.viewport()))
    return {};
  // A partial paint draws only the lines that touch its area. A letter that is taller
  // than its line is therefore cut at the area's edge, in both layouts but at different
  // heights. It depends on the installed fonts which letters are. Remains of an older
  // picture would differ in more pixels than that.
  constexpr qint64 edge = 4;
  if (pixelsThatDiffer(expected, found) <= edge)
    return {};
  const QString told = pictureDifference(expected, found);
  return told.isEmpty() ? told : QStringLiteral("on the screen ") + told;
}

QString ofScrollBars(const TwoLayouts& two) {
  return firstOf({ofScrollBar(QStringLiteral("vertical bar"), *two.expected.verticalScrollBar(),
                              *two.found.verticalScrollBar()),
                  ofScrollBar(QStringLiteral("horizontal bar"), *two.expected.horizontalScrollBar(),
                              *two.found.horizontalScrollBar())});
}

QString ofSizes(const TwoLayouts& two) {
  const QAbstractTextDocumentLayout& expected = *two.expected.document()->documentLayout();
  const QAbstractTextDocumentLayout& found = *two.found.document()->documentLayout();
  return firstOf(
      {difference(QStringLiteral("document size"), expected.documentSize(), found.documentSize()),
       difference(QStringLiteral("the root frame"),
                  expected.frameBoundingRect(two.expected.document()->rootFrame()),
                  found.frameBoundingRect(two.found.document()->rootFrame())),
       difference(QStringLiteral("pages"), expected.pageCount(), found.pageCount()),
       difference(QStringLiteral("size of the document"), two.expected.document()->size(),
                  two.found.document()->size())});
}

QString ofBlocks(const TwoLayouts& two) {
  QTextBlock a = two.expected.document()->begin();
  QTextBlock b = two.found.document()->begin();
  for (; a.isValid() || b.isValid(); a = a.next(), b = b.next()) {
    const QString name =
        QStringLiteral("block %1 (\"%2\")").arg(b.blockNumber()).arg(b.text().left(40));
    if (a.text() != b.text())
      return name + QStringLiteral(": another text");
    const QRectF expected = two.expected.document()->documentLayout()->blockBoundingRect(a);
    const QRectF found = two.found.document()->documentLayout()->blockBoundingRect(b);
    if (const QString rects = difference(name, expected, found); !rects.isEmpty())
      return rects;
    if (const QString lines = difference(name, linesOf(a), linesOf(b)); !lines.isEmpty())
      return lines;
  }
  return {};
}

QString ofNumbers(const TwoLayouts& two, int places) {
  return firstOf({ofBlocks(two), ofSizes(two), ofScrollBars(two), ofHits(two, places),
                  ofCursors(two, places)});
}

}  // namespace layout_compare
