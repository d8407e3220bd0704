#include "terminal/view/PaneTurns.h"

#include <algorithm>
#include <utility>

namespace {

/// What a turn may take, in milliseconds: of a frame, whose rest is for paint;
/// to catch up with much that waits, where paint is a third of the work; and
/// while more comes in than can be shown.
constexpr double ordinaryTurn = 8;
constexpr double catchUpTurn = PaneTurns::longestTurn;
constexpr double floodTurn = 2;

}  // namespace

int PaneTurns::textComes() {
  arriving_ = true;
  const qint64 idle = sinceTurn_.isValid() ? sinceTurn_.elapsed() : frameLength;
  return static_cast<int>(std::max<qint64>(frameLength - idle, 0));
}

void PaneTurns::begin() {
  sinceTurn_.start();
}

double PaneTurns::characters(Waiting waiting) const {
  const bool much = waiting.bytes > muchText;
  const bool flood = waiting.skipped || (arriving_ && much);
  return charactersPerMillisecond_ * (flood ? floodTurn : much ? catchUpTurn : ordinaryTurn);
}

void PaneTurns::learn(qsizetype characters, qint64 nanoseconds) {
  // A handful of characters tells nothing of the rate.
  constexpr qsizetype enoughToTell = 2048;
  if (characters < enoughToTell)
    return;
  const double rate =
      static_cast<double>(characters) * 1e6 / static_cast<double>(std::max<qint64>(nanoseconds, 1));
  charactersPerMillisecond_ += (rate - charactersPerMillisecond_) / 4;
}

int PaneTurns::end() {
  // While more comes in, taking it in goes first: most of a flood is never
  // shown, and the less often it is, the sooner it is over.
  constexpr qint64 share = 8;
  constexpr qint64 longestPause = 100;
  const qint64 taken = sinceTurn_.elapsed();
  const qint64 pause = std::exchange(arriving_, false)
                           ? std::clamp<qint64>(share * taken, frameLength, longestPause)
                           : frameLength;
  return static_cast<int>(std::max<qint64>(pause - taken, 0));
}
