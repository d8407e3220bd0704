#include "net/SocketReader.h"

#include <QScopedValueRollback>
#include <QTcpSocket>

namespace kelmora::net {

SocketReader::SocketReader(QTcpSocket& socket, Consumer consume)
    : socket_(socket), consume_(std::move(consume)) {}

void SocketReader::readSocketData() {
  // As all of it came in one go, the toolkit hands it over without a copy.
  consume_(socket_.read(socket_.bytesAvailable()));
}

void SocketReader::readRest() {
  if (socket_.bytesAvailable() > 0)
    readSocketData();
}

void SocketReader::readArrived() {
  if (socket_.state() != QAbstractSocket::ConnectedState)
    return;
  const QScopedValueRollback asking(asking_, true);
  // What it finds it tells as ever, by readyRead().
  (void)socket_.waitForReadyRead(0);
}

}  // namespace kelmora::net
