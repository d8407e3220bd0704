#include "terminal/view/PaneTurns.h"

#include <algorithm>
#include <utility>

namespace kelmora::terminal {

namespace {

/// How many milliseconds a turn may take: half a frame, as the rest is for painting,
/// and less while more arrives than can be shown.
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
  // While text keeps arriving, reading it comes first. Most of a flood is dropped
  // unseen, so the less often it is shown, the sooner it is over. A turn gets one
  // part in eight of the time.
  constexpr qint64 share = 8;
  constexpr qint64 longestPause = 100;
  const qint64 taken = sinceTurn_.elapsed();
  const qint64 pause = std::exchange(arriving_, false)
                           ? std::clamp<qint64>(share * taken, frameLength, longestPause)
                           : frameLength;
  return static_cast<int>(std::max<qint64>(pause - taken, 0));
}

}  // namespace kelmora::terminal
