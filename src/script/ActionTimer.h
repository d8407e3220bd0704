#pragma once

#include <QStringList>
#include <QTimer>
#include <functional>

/// Holds the rest of a list of actions that a /pause has put off, and hands it
/// on when the time has come. It does so once and then destroys itself.
class ActionTimer : public QTimer {
  Q_OBJECT

 public:
  using WhenDue = std::function<void(const ActionTimer& timer)>;

  ActionTimer(QString timerId, QStringList actions, WhenDue whenDue, QObject& parent);

  [[nodiscard]] const QString& timerId() const { return timerId_; }
  [[nodiscard]] const QStringList& actions() const { return actions_; }

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void sendActions();

 private:
  QString timerId_;
  QStringList actions_;
  WhenDue whenDue_;
};
