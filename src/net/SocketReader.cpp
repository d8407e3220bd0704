#include "net/SocketReader.h"

#include <QElapsedTimer>
#include <QNetworkProxy>
#include <QTcpSocket>

namespace {

QByteArray takeRead(QTcpSocket& socket) {
  if (socket.bytesAvailable() <= SocketReader::readSize)
    return socket.readAll();
  const QByteArray start = socket.peek(SocketReader::readSize);
  // A line without an end in sight is cut: something has to be.
  const qsizetype length = start.lastIndexOf('\n') + 1;
  return socket.read(length > 0 ? length : start.size());
}

}  // namespace

SocketReader::SocketReader(QTcpSocket& socket, Consumer consume)
    : socket_(socket), consume_(std::move(consume)) {
  nextTurn_.setSingleShot(true);
  QObject::connect(&nextTurn_, &QTimer::timeout, &nextTurn_, [this] {
    // What waited is gone if the connection was closed since.
    if (socket_.bytesAvailable() > 0)
      readSocketData();
  });
}

void SocketReader::readSocketData() {
  QElapsedTimer elapsed;
  elapsed.start();
  do
    readOnce();
  while (socket_.bytesAvailable() > 0 && elapsed.elapsed() < turn);
}

void SocketReader::readOnce() {
  const QByteArray data = takeRead(socket_);
  if (socket_.bytesAvailable() > 0)
    nextTurn_.start(0);
  else
    nextTurn_.stop();
  consume_(data);
}

void SocketReader::drain() {
  while (socket_.isReadable() && socket_.bytesAvailable() > 0)
    readOnce();
}

void SocketReader::limitWaiting() {
  // Behind an HTTP proxy the toolkit never tells of the text that a full
  // buffer held back, nor of the end of the connection; no limit there.
  const bool http = QNetworkProxy::applicationProxy().type() == QNetworkProxy::HttpProxy;
  socket_.setReadBufferSize(http ? 0 : waitingSize);
}
