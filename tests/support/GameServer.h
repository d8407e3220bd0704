// A game server in the test itself, which the client connects to.
#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

/// A game server of a test: takes connections on loopback, keeps what the
/// latest one sends, and sends what the test tells it to.
class GameServer : public QObject {
 public:
  explicit GameServer(const QHostAddress& address = QHostAddress::LocalHost) {
    connect(&server_, &QTcpServer::newConnection, this, [this] {
      peer_ = server_.nextPendingConnection();
      connect(peer_, &QTcpSocket::readyRead, this, [this] { received_ += peer_->readAll(); });
    });
    server_.listen(address);
  }

  [[nodiscard]] quint16 port() const { return server_.serverPort(); }
  /// The latest connection; null before the first.
  [[nodiscard]] QTcpSocket* peer() const { return peer_; }
  [[nodiscard]] const QByteArray& received() const { return received_; }
  void forget() { received_.clear(); }

  /// Hands the bytes to the network at once, so that they arrive as one piece
  /// as far as the system allows.
  void send(const QByteArray& bytes) {
    peer_->write(bytes);
    peer_->flush();
  }
  void stopListening() { server_.close(); }

 private:
  QTcpServer server_;
  QTcpSocket* peer_ = nullptr;
  QByteArray received_;
};
