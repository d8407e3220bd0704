#pragma once

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// The network between a client and a server on this computer. It carries everything
/// at once, or cuts a line in two.
class Wire : public QObject {
 public:
  explicit Wire(quint16 server) : serverPort_(server) {
    connect(&listener_, &QTcpServer::newConnection, this, [this] { join(); });
    listener_.listen(QHostAddress::LocalHost);
  }

  [[nodiscard]] quint16 port() const { return listener_.serverPort(); }

  /// The next words like these are the last that arrive until goOn().
  void cutBehind(const QByteArray& words) { words_ = words; }
  [[nodiscard]] bool isCut() const { return held_.has_value(); }
  void goOn() {
    if (const auto rest = std::exchange(held_, std::nullopt))
      send(*rest);
  }

 private:
  void join() {
    client_ = listener_.nextPendingConnection();
    auto* const client = client_;
    auto* const server = new QTcpSocket(client);
    connect(client, &QTcpSocket::readyRead, server, [=] { server->write(client->readAll()); });
    connect(server, &QTcpSocket::readyRead, this, [=, this] { carry(server->readAll()); });
    connect(client, &QTcpSocket::disconnected, server, &QTcpSocket::disconnectFromHost);
    connect(server, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
    server->connectToHost(QHostAddress::LocalHost, serverPort_);
  }
  void carry(const QByteArray& bytes) {
    if (held_) {
      *held_ += bytes;
      return;
    }
    const qsizetype at = words_.isEmpty() ? -1 : bytes.indexOf(words_);
    if (at < 0)
      return send(bytes);
    const qsizetype cut = at + words_.size();
    words_.clear();
    held_ = bytes.sliced(cut);
    send(bytes.first(cut));
  }
  void send(const QByteArray& bytes) const {
    if (!client_->isOpen())
      return;
    client_->write(bytes);
    client_->flush();
  }

  quint16 serverPort_;
  QTcpServer listener_;
  QTcpSocket* client_ = nullptr;  ///< the latest; child of the listener
  QByteArray words_;
  std::optional<QByteArray> held_;
};

/// A host that answers neither yes nor no: nobody takes those who call, and there is
/// no room for another one to wait.
class SilentHost {
 public:
  SilentHost() {
    listener_.setListenBacklogSize(0);
    listener_.listen(QHostAddress::LocalHost);
    listener_.pauseAccepting();
    for (int i = 0; i < 8; ++i) {
      fillers_.push_back(std::make_unique<QTcpSocket>());
      fillers_.back()->connectToHost(QHostAddress::LocalHost, port());
    }
  }

  [[nodiscard]] quint16 port() const { return listener_.serverPort(); }

 private:
  QTcpServer listener_;
  std::vector<std::unique_ptr<QTcpSocket>> fillers_;
};
