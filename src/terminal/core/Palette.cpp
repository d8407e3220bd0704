#include "terminal/core/Palette.h"

#include <array>

namespace kelmora::terminal {

namespace {

constexpr int colourCount = 256;
constexpr int textLength = 7;  // "#rrggbb"
using Text = std::array<char, textLength>;

constexpr Text colourText(quint32 rgb) {
  Text text{'#'};
  for (unsigned digit = 1; digit < textLength; ++digit)
    text[digit] = "0123456789abcdef"[(rgb >> ((textLength - 1 - digit) * 4)) & 0xFU];
  return text;
}

constexpr std::array<Text, colourCount> makePalette() {
  constexpr std::array<quint32, 16> named{
      0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xc0c0c0,
      0x808080, 0xff0000, 0x00ff00, 0xffff00, 0x0000ff, 0xff00ff, 0x00ffff, 0xffffff};
  constexpr std::array<quint32, 6> levels{0x00, 0x5f, 0x87, 0xaf, 0xd7, 0xff};
  constexpr quint32 greys = 24;

  std::array<Text, colourCount> palette{};
  std::size_t next = 0;
  for (const quint32 rgb : named)
    palette[next++] = colourText(rgb);
  for (const quint32 red : levels)
    for (const quint32 green : levels)
      for (const quint32 blue : levels)
        palette[next++] = colourText(red << 16 | green << 8 | blue);
  for (quint32 grey = 0; grey < greys; ++grey)
    palette[next++] = colourText((0x08 + grey * 0x0a) * 0x010101);
  return palette;
}

constexpr std::array<Text, colourCount> palette = makePalette();

}  // namespace

std::optional<QByteArrayView> paletteColour(quint32 index) {
  if (index >= palette.size())
    return std::nullopt;
  return QByteArrayView(palette[index].data(), textLength);
}

}  // namespace kelmora::terminal
