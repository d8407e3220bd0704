#include "script/ActionTimer.h"

#include "script/ActionQueue.h"

using namespace kelmora;
using namespace kelmora::script;

void ActionTimer::sendActions() {
  stop();
  // First, so that the actions may pause under the same id again.
  owner->pendingTimers_.remove(timerId);
  owner->runActions(actions);
  deleteLater();
}
