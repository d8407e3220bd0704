// The client in a process of its own, and all that it says on the accessibility bus.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>

#include "access/Accessible.h"
#include "support/GameServer.h"

class HeardClient : public QObject {
  Q_OBJECT

 public:
  struct Event {
    QString name;  ///< such as "StateChanged showing"
    Accessible source;
    QVariant data;
  };

  /// Starts the client on the server and waits for its window.
  explicit HeardClient(const GameServer& server);
  ~HeardClient() override;

  /// Null where the client has not come up.
  [[nodiscard]] const Accessible& application() const { return application_; }
  /// A button of the toolbar by the beginning of its name.
  [[nodiscard]] Accessible button(const QString& beginning) const;
  [[nodiscard]] bool isRunning() const { return process_.state() == QProcess::Running; }
  [[nodiscard]] QByteArray log() { return process_.readAllStandardError(); }

  [[nodiscard]] const QList<Event>& events() const { return events_; }
  /// What a screen reader speaks wherever the focus is: the lines of each announcement.
  [[nodiscard]] const QList<QStringList>& announcements() const { return announcements_; }
  /// The lines of all announcements.
  [[nodiscard]] QStringList spoken() const;
  /// The objects that announced something, where announcements are objects.
  [[nodiscard]] const QList<Accessible>& notices() const { return notices_; }
  void forget();

 private Q_SLOTS:
  void hear(const QDBusMessage& message);

 private:
  QTemporaryDir folder_;
  QProcess process_;
  Accessible application_;
  QList<Event> events_;
  QList<QStringList> announcements_;
  QList<Accessible> notices_;
};
