#pragma once

#include <QObject>
#include <QTcpServer>
#include <QTimer>
#include <map>
#include <memory>

#include "demo/DemoWorld.h"
#include "demo/PlayerSession.h"

namespace kelmora::demo {

/// The world behind a TCP port of this computer. Loopback only: the protocol
/// has no passwords and is not meant for strangers.
class DemoServer : public QObject, private DemoHost {
  Q_OBJECT

 public:
  explicit DemoServer(const DemoOptions& options = {}, QObject* parent = nullptr);
  ~DemoServer() override;

  /// Takes connections on 127.0.0.1; port 0 picks a free one. False with
  /// errorString() where the port cannot be had.
  [[nodiscard]] bool listen(quint16 port);
  [[nodiscard]] quint16 port() const { return listener_.serverPort(); }
  [[nodiscard]] QString errorString() const { return listener_.errorString(); }
  [[nodiscard]] bool isPortTaken() const {
    return listener_.serverError() == QAbstractSocket::AddressInUseError;
  }
  /// Connections that are open now, named or not.
  [[nodiscard]] int sessionCount() const { return static_cast<int>(sessions_.size()); }

 private:
  void deliver(PlayerId to, const QByteArray& response) override;
  void startFlood(PlayerId to, int lines) override;
  std::optional<int> stopFlood(PlayerId to) override;
  void hangUp(PlayerId who) override;

  void acceptConnections();
  void openSession(QTcpSocket* socket);
  void endSession(PlayerId id);
  [[nodiscard]] PlayerSession* session(PlayerId id) const;

  DemoOptions options_;
  DemoWorld world_;
  QTcpServer listener_;
  QTimer heart_;
  std::map<PlayerId, std::unique_ptr<PlayerSession>> sessions_;
  quint64 nextId_ = 1;
};

}  // namespace kelmora::demo
