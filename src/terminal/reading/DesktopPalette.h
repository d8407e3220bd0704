#pragma once

#include <QApplication>
#include <QPalette>

namespace kelmora::terminal {

/// The desktop's colours, each set by itself: for a child of the pane that is no part
/// of the game's text and would otherwise have the pane's black ground.
[[nodiscard]] inline QPalette desktopPalette() {
  QPalette palette = QApplication::palette();
  for (int group = 0; group < QPalette::NColorGroups; ++group)
    for (int role = 0; role < QPalette::NColorRoles; ++role) {
      const auto inGroup = static_cast<QPalette::ColorGroup>(group);
      const auto asRole = static_cast<QPalette::ColorRole>(role);
      palette.setBrush(inGroup, asRole, palette.brush(inGroup, asRole));
    }
  return palette;
}

}  // namespace kelmora::terminal
