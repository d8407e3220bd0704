#include "script/ActionTimer.h"

#include <utility>

ActionTimer::ActionTimer(QString timerId, QStringList actions, WhenDue whenDue, QObject& parent)
    : QTimer(&parent),
      timerId_(std::move(timerId)),
      actions_(std::move(actions)),
      whenDue_(std::move(whenDue)) {
  connect(this, SIGNAL(timeout()), this, SLOT(sendActions()));
}

void ActionTimer::sendActions() {
  stop();
  whenDue_(*this);
  deleteLater();
}
