#pragma once

#include <QTest>

#include "PictureCompare.h"
#include "TwoLayouts.h"

/// Each function returns the first difference between the layout under test and the
/// toolkit's; empty if there is none.
namespace layout_compare {

/// Compares the whole widgets on a screen of so many device pixels to a pixel.
QString ofPictures(TwoLayouts& two, double pixelRatio = 1);
/// Without the scroll bars, which show an estimate until all is laid out.
QString ofPages(TwoLayouts& two);
/// Compares what is on the screen, where only parts that were reported as changed have
/// been painted anew. The toolkit leaves single pixels of old letters, which may
/// differ. Needs the offscreen platform.
QString ofScreens(TwoLayouts& two);
QString ofScrollBars(const TwoLayouts& two);
QString ofSizes(const TwoLayouts& two);
/// Compares the places of blocks and of their lines.
QString ofBlocks(const TwoLayouts& two);
/// Compares all that the layouts can be asked for, at about so many places.
QString ofNumbers(const TwoLayouts& two, int places);

/// Compares long texts; returns some words from where they differ.
QString ofTexts(const QString& expected, const QString& found);
/// Returns the first text that is not empty.
QString firstOf(std::initializer_list<QString> differences);
QString told(const QRectF& rect);

}  // namespace layout_compare

/// Fails the test if a difference is not empty.
#define COMPARE_LAYOUTS(difference)             \
  do {                                          \
    const QString told = (difference);          \
    QVERIFY2(told.isEmpty(), qPrintable(told)); \
  } while (false)
