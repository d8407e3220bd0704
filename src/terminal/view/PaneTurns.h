#pragma once

#include <QElapsedTimer>

/// A frame of the screen, in milliseconds.
inline constexpr int frameLength = 16;

/// When the pane takes a turn at inserting what waits, and how much it inserts
/// in one: such that keys and paint come between, and that in a flood reading
/// goes before showing.
class PaneTurns {
 public:
  /// More bytes than a pane shows at once. So much waits for the rest of its
  /// frame even after a pause: lines that may be answered come with it.
  static constexpr qsizetype muchText = qsizetype{64} * 1024;
  /// Milliseconds after which a turn takes no further text, whatever it shows.
  static constexpr int longestTurn = 16;

  /// What waits: its bytes, and whether more was dropped unseen before it.
  struct Waiting {
    qsizetype bytes = 0;
    bool skipped = false;
  };

  /// Milliseconds until the turn for a text that comes now.
  [[nodiscard]] int textComes();
  void begin();
  /// The characters to insert in the turn that has begun.
  [[nodiscard]] double characters(Waiting waiting) const;
  /// How long a turn took for its characters, layout included.
  void learn(qsizetype characters, qint64 nanoseconds);
  /// Ends the turn. Milliseconds until the next, should anything be left.
  [[nodiscard]] int end();

 private:
  QElapsedTimer sinceTurn_;
  /// Whether anything came since the last turn.
  bool arriving_ = false;
  double charactersPerMillisecond_ = 1000;
};
