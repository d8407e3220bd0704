#pragma once

#include <QMap>
#include <QStringList>

class ActionTimer;

namespace kelmora::script {

class Interpreter;
struct Pause;
class ScriptHost;

/// Runs lists of actions in order; a pause parks the rest of its list in a
/// timer. Every list of the program goes through here.
class ActionQueue {
 public:
  ActionQueue(ScriptHost& host, Interpreter& interpreter)
      : host_(host), interpreter_(interpreter) {}
  /// Waiting timers go with the queue; their actions are never run.
  ~ActionQueue();
  Q_DISABLE_COPY_MOVE(ActionQueue)

  /// Returns at the list's end or first pause; aliases and loops on the way
  /// have run by then.
  void runActions(const QStringList& actions);

  /// Runs the rest of a list after the pause, whose delay is above zero. If a
  /// timer already waits under its id, this is an error and the rest is dropped.
  void park(const Pause& pause, const QStringList& rest);
  /// Cancels a waiting timer and says so, or that there is none.
  void unpause(const QString& timerId);

  /// The waiting timers by id.
  [[nodiscard]] const QMap<QString, ActionTimer*>& pendingTimers() const { return pendingTimers_; }

 private:
  friend class ::ActionTimer;

  ScriptHost& host_;
  Interpreter& interpreter_;
  QMap<QString, ActionTimer*> pendingTimers_;
};

}  // namespace kelmora::script
