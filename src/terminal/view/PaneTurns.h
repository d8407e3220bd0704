#pragma once

#include <QElapsedTimer>

namespace kelmora::terminal {

/// A frame of the screen, in milliseconds.
inline constexpr int frameLength = 16;

/// When the pane takes a turn at writing what waits, and for how long: such that
/// keys and paint come between, and that in a flood reading goes before showing.
class PaneTurns {
 public:
  /// More bytes than a pane shows at once. So much waits for the rest of its
  /// frame even after a pause: lines that may be answered come with it.
  static constexpr qsizetype muchText = qsizetype{64} * 1024;

  /// Milliseconds until the turn for a text that comes now.
  [[nodiscard]] int textComes();
  /// Begins a turn, with so many bytes waiting. Milliseconds that it may take.
  [[nodiscard]] int begin(qsizetype waiting);
  /// Ends the turn. Milliseconds until the next, should anything be left.
  [[nodiscard]] int end();

 private:
  QElapsedTimer sinceTurn_;
  /// Whether anything came since the last turn.
  bool arriving_ = false;
};

}  // namespace kelmora::terminal
