#pragma once

#include <QByteArray>
#include <array>
#include <cstring>
#include <vector>

namespace kelmora::automation {

/// Finds the places in a text where a needle may begin, and leaps over the others.
/// It follows an idea of Wu and Manber.
///
/// With a shortest needle of five bytes, a needle that begins at a place has its
/// first five bytes there. So only the fourth and the fifth byte from there are
/// looked at. Where no needle has this pair among its first five bytes, none begins
/// at this place or the three behind it. Where one has it as its second and third
/// byte, say, none begins before two places further on.
class NeedleStarts {
 public:
  /// Empty needles are left out.
  explicit NeedleStarts(const std::vector<QByteArray>& needles);

  /// The first place from `at` on where a needle may begin; `end` where there is
  /// none.
  [[nodiscard]] const char* next(const char* at, const char* end) const {
    if (leaps_.empty()) {
      while (at != end && !isFirstByte_[static_cast<unsigned char>(*at)])
        ++at;
      return at;
    }
    while (end - at >= shortest_) {
      const quint8 leap = leaps_[pairAt(at + shortest_ - pairLength)];
      if (leap == 0)
        return at;
      at += leap;
    }
    return end;
  }

 private:
  static constexpr qsizetype pairLength = 2;

  [[nodiscard]] static quint16 pairAt(const char* bytes) {
    quint16 pair = 0;
    std::memcpy(&pair, bytes, sizeof pair);
    return pair;
  }

  std::array<bool, 256> isFirstByte_ = {};  // whether a needle begins with it
  qsizetype shortest_ = 0;                  // length of the shortest needle in bytes
  std::vector<quint8> leaps_;  // in bytes, of each pair; empty where a needle has no pair
};

}  // namespace kelmora::automation
