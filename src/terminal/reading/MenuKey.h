#pragma once

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QtGlobal>

namespace kelmora::terminal {

/// Whether the event asks for the context menu by a key. Of the menu key, the toolkit's
/// text editor scrolls to its text cursor first, and in a text that is only read that is
/// far from what the reader sees. Shift+F10 it knows on Windows alone.
[[nodiscard]] inline bool asksForMenuByKey(const QEvent& event) {
#ifndef Q_OS_WIN
  if (event.type() == QEvent::KeyPress) {
    const auto& press = static_cast<const QKeyEvent&>(event);
    return press.key() == Qt::Key_F10 && press.modifiers() == Qt::ShiftModifier;
  }
#endif
  return event.type() == QEvent::ContextMenu &&
         static_cast<const QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard;
}

}  // namespace kelmora::terminal
