#include "app/Beeper.h"

#include <QSoundEffect>
#include <QUrl>

namespace kelmora::app {

void Beeper::beep() {
  if (effect_ == nullptr) {
    effect_ = new QSoundEffect(&owner_);
    effect_->setSource(QUrl(QStringLiteral("qrc:/sounds/beep.wav")));
  }
  effect_->play();
}

}  // namespace kelmora::app
