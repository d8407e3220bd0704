#include "automation/core/NeedleStarts.h"

#include <algorithm>

namespace kelmora::automation {

NeedleStarts::NeedleStarts(const std::vector<QByteArray>& needles) {
  constexpr qsizetype farthestLeap = 255;
  shortest_ = farthestLeap;
  for (const QByteArray& needle : needles) {
    if (needle.isEmpty())
      continue;
    isFirstByte_[static_cast<unsigned char>(needle.front())] = true;
    shortest_ = std::min(shortest_, needle.size());
  }
  if (shortest_ < pairLength)
    return;
  // A pair that no needle has in this length can only stand in front of a needle;
  // its second byte may be a needle's first.
  leaps_.assign(std::size_t{1} << 16U, static_cast<quint8>(shortest_ - 1));
  for (const QByteArray& needle : needles) {
    for (qsizetype place = 0; !needle.isEmpty() && place <= shortest_ - pairLength; ++place) {
      quint8& leap = leaps_[pairAt(needle.constData() + place)];
      leap = std::min(leap, static_cast<quint8>(shortest_ - pairLength - place));
    }
  }
}

}  // namespace kelmora::automation
