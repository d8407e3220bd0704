#include "script/PendingTimers.h"

#include <utility>

#include "script/ActionTimer.h"
#include "script/Log.h"
#include "script/ScriptHost.h"

namespace kelmora::script {

PendingTimers::PendingTimers(ScriptHost& host, RunActions runActions)
    : host_(host), runActions_(std::move(runActions)) {}

PendingTimers::~PendingTimers() {
  if (!timers_.isEmpty())
    qCInfo(scriptsLog) << "waiting timers dropped at the end:" << timers_.size();
  qDeleteAll(timers_);
}

void PendingTimers::park(const Pause& pause, const QStringList& rest) {
  if (timers_.contains(pause.timerId)) {
    qCInfo(scriptsLog) << "pause refused, its id is taken; actions dropped:" << rest.size();
    host_.printError(tr("Duplicate timer id: %1").arg(pause.timerId));
    return;
  }
  auto* const timer = new ActionTimer(
      pause.timerId, rest, [this](const ActionTimer& due) { runDue(due); }, host_.timerParent());
  timers_.insert(pause.timerId, timer);
  timer->start(pause.delay);
}

void PendingTimers::runDue(const ActionTimer& timer) {
  // The id is free before the actions run: they may pause under it again.
  timers_.remove(timer.timerId());
  runActions_(timer.actions());
}

void PendingTimers::unpause(const QString& timerId) {
  const ActionTimer* const timer = timers_.take(timerId);
  if (timer == nullptr) {
    host_.printError(tr("No such pending timer: %1").arg(timerId));
    return;
  }
  qCInfo(scriptsLog) << "timer cancelled by a script; actions dropped:" << timer->actions().size();
  // A timer that is due has left the map, so this one is not in its own slot
  // now and can be deleted.
  delete timer;
  host_.printInfo(tr("Deleted timer: %1").arg(timerId));
}

}  // namespace kelmora::script
