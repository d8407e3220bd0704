#pragma once

#include <QCoreApplication>
#include <QMap>
#include <QStringList>
#include <functional>

#include "script/Sequel.h"

class ActionTimer;

namespace kelmora::script {

class ScriptHost;

/// The lists of actions that wait for the end of a pause, each under the id
/// that the pause was given.
class PendingTimers {
  Q_DECLARE_TR_FUNCTIONS(Script)

 public:
  using RunActions = std::function<void(const QStringList& actions)>;

  /// The function is called with the rest of a list when its pause is over.
  PendingTimers(ScriptHost& host, RunActions runActions);
  /// What still waits is dropped.
  ~PendingTimers();
  Q_DISABLE_COPY_MOVE(PendingTimers)

  /// Lets the rest of a list wait for the pause, whose delay is above zero. If
  /// something already waits under that id, the player is told and the rest is
  /// dropped.
  void park(const Pause& pause, const QStringList& rest);
  /// Drops what waits under this id. The player is told that, or that there is
  /// nothing of that id.
  void unpause(const QString& timerId);

  [[nodiscard]] const QMap<QString, ActionTimer*>& byId() const { return timers_; }

 private:
  void runDue(const ActionTimer& timer);

  ScriptHost& host_;
  RunActions runActions_;
  QMap<QString, ActionTimer*> timers_;
};

}  // namespace kelmora::script
