#pragma once

#include <QTest>

#include "PictureCompare.h"
#include "TwoLayouts.h"

/// Each tells how the layout under test differs from the toolkit's, first of
/// all; empty where it does not.
namespace layout_compare {

/// The whole widgets, as of a screen of so many device pixels to one of theirs.
QString ofPictures(TwoLayouts& two, double pixelRatio = 1);
/// Without the scroll bars, which show an estimate until all is laid out.
QString ofPages(TwoLayouts& two);
/// What stands of the pages on the screen: there only what was told to have
/// changed is painted anew. The toolkit leaves a pixel of an old letter here and there: that
/// need not be left likewise. Works on a screen that nobody sees.
QString ofScreens(TwoLayouts& two);
QString ofScrollBars(const TwoLayouts& two);
QString ofSizes(const TwoLayouts& two);
/// Where the blocks stand and their lines in them.
QString ofBlocks(const TwoLayouts& two);
/// All that can be asked for, at about so many places.
QString ofNumbers(const TwoLayouts& two, int places);

/// Long texts, from a little before they part.
QString ofTexts(const QString& expected, const QString& found);
/// The first that is not empty.
QString firstOf(std::initializer_list<QString> differences);
QString told(const QRectF& rect);

}  // namespace layout_compare

/// Ends a test where a difference is told.
#define COMPARE_LAYOUTS(difference)             \
  do {                                          \
    const QString told = (difference);          \
    QVERIFY2(told.isEmpty(), qPrintable(told)); \
  } while (false)
