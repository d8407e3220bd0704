#pragma once

#include <QByteArrayView>
#include <optional>

namespace kelmora::terminal {

/// The xterm colour of an index as lower-case "#rrggbb", or nothing above 255.
/// The text lives as long as the program.
[[nodiscard]] std::optional<QByteArrayView> paletteColour(quint32 index);

}  // namespace kelmora::terminal
