#pragma once

class QObject;
class QSoundEffect;

namespace kelmora::app {

/// The sound of a BEL. Nothing is loaded before the first one, so a session
/// without bells never wakes the audio system; where there is no audio device
/// it stays silent.
class Beeper {
 public:
  /// The owner, which outlives the beeper, gets the sound as its child.
  explicit Beeper(QObject& owner) : owner_(owner) {}

  /// Plays the beep from its start.
  void beep();

 private:
  QObject& owner_;
  QSoundEffect* effect_ = nullptr;
};

}  // namespace kelmora::app
