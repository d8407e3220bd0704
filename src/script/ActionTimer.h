#pragma once

#include <QStringList>
#include <QTimer>

namespace kelmora::script {
class ActionQueue;
}

/// What is left of a list of actions after a pause, and the clock it waits
/// for. It is waiting, and then known to its owner by its id, or gone.
class ActionTimer : public QTimer {
  Q_OBJECT

 public:
  explicit ActionTimer(QObject& parent) : QTimer(&parent) {}

  kelmora::script::ActionQueue* owner = nullptr;
  QStringList actions;
  QString timerId;

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  /// Gives the id free, runs the actions and destroys the timer.
  void sendActions();
};
