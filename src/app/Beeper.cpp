#include "app/Beeper.h"

#include <QSoundEffect>
#include <QUrl>

Beeper::Beeper() = default;
Beeper::~Beeper() = default;

void Beeper::beep() {
  if (!effect_) {
    effect_ = std::make_unique<QSoundEffect>();
    effect_->setSource(QUrl(QStringLiteral("qrc:/sounds/beep.wav")));
  }
  effect_->play();
}

bool Beeper::isLoaded() const {
  return effect_ && effect_->isLoaded();
}
