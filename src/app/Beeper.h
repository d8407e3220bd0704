#pragma once

#include <memory>

class QSoundEffect;

/// The sound of a BEL. Nothing is loaded before the first one, so a session
/// without bells never wakes the audio system; where there is no audio device
/// it stays silent.
class Beeper {
 public:
  Beeper();
  ~Beeper();

  /// Plays the beep from its start.
  void beep();

  /// Whether the sound is ready to be heard.
  [[nodiscard]] bool isLoaded() const;

 private:
  std::unique_ptr<QSoundEffect> effect_;
};
