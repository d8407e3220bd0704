#pragma once

#include <QElapsedTimer>

namespace kelmora::terminal {

/// The time between two pictures on the screen, in milliseconds.
inline constexpr int frameLength = 16;

/// Decides when the pane writes waiting text, and for how long: so that keys and
/// painting get their time in between, and so that in a flood most time is left for
/// reading.
class PaneTurns {
 public:
  /// In bytes; more than fits on the screen. When so much arrives at once, it is
  /// written only after the rest of the frame even if there was a pause before it:
  /// first its lines are read, because a trigger may have to answer one.
  static constexpr qsizetype muchText = qsizetype{64} * 1024;

  /// Call it when a text arrives. Returns how many milliseconds to wait for the turn.
  [[nodiscard]] int textComes();
  /// Begins a turn with so many bytes waiting. Returns how many milliseconds it may
  /// take.
  [[nodiscard]] int begin(qsizetype waiting);
  /// Ends the turn. Returns how many milliseconds later the next one should begin if
  /// anything is left.
  [[nodiscard]] int end();

 private:
  QElapsedTimer sinceTurn_;
  /// Whether any text has arrived since the last turn.
  bool arriving_ = false;
};

}  // namespace kelmora::terminal
