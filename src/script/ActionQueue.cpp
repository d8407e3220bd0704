#include "script/ActionQueue.h"

#include "script/ActionTimer.h"
#include "script/Interpreter.h"
#include "script/ScriptHost.h"

namespace kelmora::script {

ActionQueue::~ActionQueue() {
  qDeleteAll(pendingTimers_);
}

void ActionQueue::runActions(const QStringList& actions) {
  interpreter_.runList(actions);
}

void ActionQueue::park(const Pause& pause, const QStringList& rest) {
  if (pendingTimers_.contains(pause.timerId)) {
    host_.printError(QStringLiteral("Duplicate timer id: ") + pause.timerId);
    return;
  }
  auto* timer = new ActionTimer(host_.timerParent());
  timer->owner = this;
  timer->actions = rest;
  timer->timerId = pause.timerId;
  QObject::connect(timer, SIGNAL(timeout()), timer, SLOT(sendActions()));
  pendingTimers_.insert(pause.timerId, timer);
  timer->start(pause.delay);
}

void ActionQueue::unpause(const QString& timerId) {
  ActionTimer* const timer = pendingTimers_.take(timerId);
  if (timer == nullptr) {
    host_.printError(QStringLiteral("No such pending timer: ") + timerId);
    return;
  }
  // It waits, so it is not inside its own slot and may go at once.
  delete timer;
  host_.printInfo(QStringLiteral("Deleted timer: ") + timerId);
}

}  // namespace kelmora::script
