#pragma once

#include <QFontMetrics>
#include <cmath>

#include "FuzzTarget.h"
#include "settings/ClientSettings.h"

using namespace kelmora;
using namespace kelmora::settings;

namespace fuzz {

/// Fonts read from a file can be laid out without harm.
inline void requireUsableFonts(const ClientSettings& record) {
  for (const QFont& font : {record.outFont, record.inFont}) {
    require(font.pointSizeF() <= 200 && font.pixelSize() <= 400, "a font is not too large");
    require(std::abs(font.letterSpacing()) <= 400 && std::abs(font.wordSpacing()) <= 400,
            "the spacings of a font are not too wide");
    const QFontMetrics metrics(font);
    require(metrics.height() >= 0 && metrics.height() < 10'000, "a line has a height");
  }
}

}  // namespace fuzz
