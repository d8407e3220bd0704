#include "net/SendLine.h"

#include <QAbstractSocket>
#include <QTextStream>

namespace {

// After a failed attempt the socket is still an open device that takes nothing;
// a stream that tried would keep every further line in memory.
bool takesLines(const QIODevice* device) {
  if (device == nullptr || !device->isWritable())
    return false;
  const auto* const socket = qobject_cast<const QAbstractSocket*>(device);
  return socket == nullptr || (socket->state() != QAbstractSocket::UnconnectedState &&
                               socket->bytesToWrite() < net::largestBacklog);
}

}  // namespace

namespace net {

void sendLine(QTextStream& stream, const QString& line) {
  if (!takesLines(stream.device()))
    return;
  stream << line << QLatin1String("\r\n");
  stream.flush();
}

}  // namespace net
