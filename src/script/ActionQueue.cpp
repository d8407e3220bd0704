#include "script/ActionQueue.h"

#include <QTextStream>
#include <utility>

#include "script/ActionTimer.h"
#include "script/Interpreter.h"
#include "script/ScriptHost.h"

namespace kelmora::script {

ActionQueue::~ActionQueue() {
  qDeleteAll(pendingTimers_);
}

void ActionQueue::runActions(const QStringList& actions) {
  QTextStream stream(&host_.gameDevice());
  stream.setAutoDetectUnicode(true);
  interpreter_.runList(actions, stream);
}

void ActionQueue::park(const QString& timerId, int delay, const QStringList& rest) {
  if (pendingTimers_.contains(timerId)) {
    host_.printError(QStringLiteral("Duplicate timer id: ") + timerId);
    return;
  }
  auto* timer = new ActionTimer(host_.timerParent());
  timer->owner = this;
  timer->actions = rest;
  timer->timerId = timerId;
  QObject::connect(timer, SIGNAL(timeout()), timer, SLOT(sendActions()));
  pendingTimers_.insert(timerId, timer);
  timer->start(delay);
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
