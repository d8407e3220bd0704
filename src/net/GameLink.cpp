#include "net/GameLink.h"

#include <QScopedValueRollback>
#include <QStringEncoder>
#include <QTcpSocket>
#include <utility>

#include "net/LinkHost.h"
#include "net/Log.h"
#include "net/StatusLines.h"

namespace kelmora::net {

GameLink::GameLink(QObject& window, LinkHost& host)
    : host_(host), socket_(*new QTcpSocket(&window)) {}

GameLink::~GameLink() {
  // The window deletes the socket later. If that ends a connection, nobody is
  // left to be told.
  socket_.disconnect();
}

void GameLink::connectToServer(const Server& server) {
  if (socket_.state() != QAbstractSocket::UnconnectedState)
    abort();
  qCInfo(connectionLog) << "connecting to" << server.hostName << "port" << server.port;
  host_.appendStatusLine(attemptLine(server.hostName, server.port, host_.statusLineRoom()));
  socket_.connectToHost(server.hostName, static_cast<quint16>(server.port));
  // An attempt can fail inside connectToHost(). Then displaySocketError() has
  // been called already, and the action stays enabled.
  if (socket_.state() != QAbstractSocket::UnconnectedState)
    host_.setActionEnabled(ConnectionAction::Connect, false);
  host_.focusInputBar();
}

void GameLink::disconnectFromServer() {
  readArrived();
  qCInfo(connectionLog) << "disconnecting in" << socket_.state();
  // During an attempt, closing the socket would wait for the attempt's outcome.
  if (socket_.state() == QAbstractSocket::HostLookupState ||
      socket_.state() == QAbstractSocket::ConnectingState)
    abort();
  else
    socket_.close();
  host_.setActionEnabled(ConnectionAction::Connect, true);
  host_.setActionEnabled(ConnectionAction::Disconnect, false);
  host_.focusInputBar();
}

void GameLink::displaySocketError(QAbstractSocket::SocketError error) {
  if (askingForData_ && error == QAbstractSocket::SocketTimeoutError)
    return;  // it only says that no data has arrived
  qCWarning(connectionLog) << error << socket_.errorString() << "in" << socket_.state();
  // Writing to a server that has gone ends the connection. Text that it sent
  // before can still be read now, but not later.
  readRest();
  // After a failed attempt the socket stays open and keeps the lines that were
  // typed meanwhile. A later connection must not get them.
  if (socket_.state() == QAbstractSocket::UnconnectedState) {
    abort();
    socket_.close();
  }
  if (const auto line = errorLine(error))
    host_.appendStatusLine(*line);
  host_.moveCursorToEnd();
  host_.setActionEnabled(ConnectionAction::Connect, true);
}

void GameLink::readSocketData() {
  // All that is there is one read, however much it is: the pipeline treats each
  // read as a whole. The socket's own buffer has no limit, which would only cut
  // a read. What has not been read yet waits in the system's buffer, and when
  // that is full, the server has to wait.
  host_.takeServerBytes(socket_.read(socket_.bytesAvailable()));
}

void GameLink::clientConnected() {
  qCInfo(connectionLog) << "connected to" << socket_.peerAddress() << "port" << socket_.peerPort();
  host_.appendStatusLine(connectedLine());
  host_.setActionEnabled(ConnectionAction::Disconnect, true);
  host_.setActionEnabled(ConnectionAction::ProxySettings, false);
}

void GameLink::clientDisconnected() {
  qCInfo(connectionLog) << "disconnected";
  readRest();
  host_.appendStatusLine(disconnectedLine());
  host_.setActionEnabled(ConnectionAction::Connect, true);
  host_.setActionEnabled(ConnectionAction::Disconnect, false);
  host_.setActionEnabled(ConnectionAction::ProxySettings, true);
}

SendResult GameLink::sendLine(const QString& line) {
  // When the server has ended the connection, the socket is still open.
  if (!socket_.isWritable() || socket_.state() == QAbstractSocket::UnconnectedState) {
    qCWarning(connectionLog) << "a line is lost, as there is no connection";
    return SendResult::NotConnected;
  }
  if (socket_.bytesToWrite() >= largestBacklog) {
    qCWarning(connectionLog) << "a line is lost, as" << socket_.bytesToWrite() << "bytes wait";
    return std::exchange(losingLines_, true) ? SendResult::LossGoesOn : SendResult::LossBegins;
  }
  losingLines_ = false;
  // Makes U+FFFD of half a surrogate pair, where QString::toUtf8() makes a "?".
  QStringEncoder toUtf8(QStringEncoder::Utf8);
  socket_.write(QByteArray(toUtf8(line + QStringLiteral("\r\n"))));
  return SendResult::Sent;
}

/// Reads, before the player's own disconnect, what has come so far but was not
/// announced yet.
void GameLink::readArrived() {
  if (socket_.state() != QAbstractSocket::ConnectedState)
    return;
  const QScopedValueRollback asking(askingForData_, true);
  // Emits readyRead() if there is something, or disconnected() if the server has
  // ended the connection. Otherwise it reports a time-out, which is ignored here.
  constexpr int noWaitMs = 0;
  (void)socket_.waitForReadyRead(noWaitMs);
}

/// Reads what is left before an end is told, so that the text is shown above it.
void GameLink::readRest() {
  if (socket_.bytesAvailable() > 0)
    readSocketData();
}

/// Ends the attempt or the connection at once. Lines that wait are not sent.
void GameLink::abort() {
  if (socket_.bytesToWrite() > 0)
    qCWarning(connectionLog) << socket_.bytesToWrite() << "bytes of waiting lines are lost";
  socket_.abort();
}

}  // namespace kelmora::net
