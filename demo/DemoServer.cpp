#include "demo/DemoServer.h"

#include <QHostAddress>

namespace kelmora::demo {

DemoServer::DemoServer(const DemoOptions& options, QObject* parent)
    : QObject(parent), options_(options), world_(options, *this) {
  heart_.setInterval(options_.roundInterval);
  connect(&heart_, &QTimer::timeout, this, [this] { world_.beat(); });
  connect(&listener_, &QTcpServer::newConnection, this, &DemoServer::acceptConnections);
}

DemoServer::~DemoServer() = default;

bool DemoServer::listen(quint16 port) {
  return listener_.listen(QHostAddress::LocalHost, port);
}

void DemoServer::acceptConnections() {
  while (QTcpSocket* socket = listener_.nextPendingConnection()) {
    if (sessionCount() < options_.maxPlayers) {
      openSession(socket);
      continue;
    }
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    socket->write(
        "The town is full tonight, down to the last hammock. Please try again later.\r\n");
    socket->disconnectFromHost();
  }
}

void DemoServer::openSession(QTcpSocket* socket) {
  const PlayerId id{nextId_++};
  auto opened = std::make_unique<PlayerSession>(socket, options_.maxUnsentBytes);
  connect(opened.get(), &PlayerSession::lineReceived, this,
          [this, id](const QByteArray& line, LineCut cut) { world_.receiveLine(id, line, cut); });
  connect(opened.get(), &PlayerSession::floodFinished, this,
          [this, id](int lines) { world_.floodFinished(id, lines); });
  connect(opened.get(), &PlayerSession::ended, this, [this, id] { endSession(id); });
  sessions_.emplace(id, std::move(opened));
  if (!heart_.isActive())
    heart_.start();
  world_.connectPlayer(id);
}

void DemoServer::endSession(PlayerId id) {
  const auto found = sessions_.find(id);
  if (found == sessions_.end())
    return;
  // This runs in a signal of the session, so it goes when that is through.
  PlayerSession* const over = found->second.release();
  over->setParent(this);
  over->deleteLater();
  sessions_.erase(found);
  world_.disconnectPlayer(id);
  if (sessions_.empty())
    heart_.stop();
}

PlayerSession* DemoServer::session(PlayerId id) const {
  const auto found = sessions_.find(id);
  return found == sessions_.end() ? nullptr : found->second.get();
}

void DemoServer::deliver(PlayerId to, const QByteArray& response) {
  if (PlayerSession* const target = session(to))
    target->send(response);
}

void DemoServer::startFlood(PlayerId to, int lines) {
  if (PlayerSession* const target = session(to))
    target->startFlood(lines);
}

std::optional<int> DemoServer::stopFlood(PlayerId to) {
  PlayerSession* const target = session(to);
  return target == nullptr ? std::nullopt : target->stopFlood();
}

void DemoServer::hangUp(PlayerId who) {
  if (PlayerSession* const target = session(who))
    target->close();
}

}  // namespace kelmora::demo
