#pragma once

#include <QContextMenuEvent>

namespace kelmora::terminal {

/// Whether the event asks for the context menu by a key. Of such, the toolkit's text
/// editor scrolls to its text cursor first, and in a text that is only read that is far
/// from what the reader sees.
[[nodiscard]] inline bool asksForMenuByKey(const QEvent& event) {
  return event.type() == QEvent::ContextMenu &&
         static_cast<const QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard;
}

}  // namespace kelmora::terminal
