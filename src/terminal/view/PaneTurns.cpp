#include "terminal/view/PaneTurns.h"

#include <algorithm>
#include <utility>

namespace kelmora::terminal {

namespace {

/// What a turn may take, in milliseconds: of a frame, whose rest is for paint,
/// and while more comes in than can be shown.
constexpr int ordinaryTurn = 8;
constexpr int floodTurn = 2;

}  // namespace

int PaneTurns::textComes() {
  arriving_ = true;
  const qint64 idle = sinceTurn_.isValid() ? sinceTurn_.elapsed() : frameLength;
  return static_cast<int>(std::max<qint64>(frameLength - idle, 0));
}

int PaneTurns::begin(qsizetype waiting) {
  sinceTurn_.start();
  return arriving_ && waiting > muchText ? floodTurn : ordinaryTurn;
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

}  // namespace kelmora::terminal
